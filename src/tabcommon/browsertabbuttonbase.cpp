// SPDX-License-Identifier: MIT
#include "browsertabbuttonbase.h"

#include "browsertabbarbase.h"
#include "browsertabbarbase_p.h"
#include "browsertabbuttonbase_p.h"
#include "eventpoint_p.h"
#include "tabbuttonaccessible_p.h"
#include "vosimagecache.h"

#include <QAccessible>
#include <QFileInfo>
#include <QMouseEvent>

quint64 BrowserTabButtonBasePrivate::pressSerial = 0;

BrowserTabButtonBasePrivate::BrowserTabButtonBasePrivate() = default;

BrowserTabButtonBasePrivate::~BrowserTabButtonBasePrivate() = default;

void BrowserTabButtonBasePrivate::ChooseIconSource()
{
    Q_Q(BrowserTabButtonBase);
    if (!tabData)
        return;
    if (tabData->IsPlugin() && bar)
        q->SetIconUrl(BarPluginIconUrl(tabData->GetTitle()));
    else if ((tabData->IsWebPopup() || tabData->IsWeb()) && !iconPath.isEmpty())
        q->SetIconUrl(iconPath);
}

bool BrowserTabButtonBasePrivate::BarClosesOnDoubleClick() const
{
    return bar && BrowserTabBarBasePrivate::get(bar)->ClosesOnDoubleClick();
}

QString BrowserTabButtonBasePrivate::BarPluginIconUrl(const QString &pluginCode) const
{
    return bar ? BrowserTabBarBasePrivate::get(bar)->PluginIconUrl(pluginCode) : QString();
}

BrowserTabButtonBase::BrowserTabButtonBase(BrowserTabButtonBasePrivate &dd, TabDataPtr tabData,
                                           const QString &iconPath, bool loading, BrowserTabBarBase *bar,
                                           QWidget *parent)
    : QFrame(parent)
    , d_ptr(&dd)
{
    Q_D(BrowserTabButtonBase);
    d->q_ptr = this;
    d->loading = loading;
    d->bar = bar;
    d->formDeferred = bar && BrowserTabBarBasePrivate::get(bar)->makingButton;
    // Every operation reads the record; a button without one would be a trap.
    d->tabData = tabData ? std::move(tabData) : TabDataPtr(new TabData);
    d->iconPath = iconPath;
}

BrowserTabButtonBase::~BrowserTabButtonBase() = default;

TabDataPtr BrowserTabButtonBase::GetTabData() const
{
    Q_D(const BrowserTabButtonBase);
    return d->tabData;
}

void BrowserTabButtonBase::SetTitle(const QString &title)
{
    Q_D(BrowserTabButtonBase);
    if (title.isEmpty())
        return;
    d->tabData->SetTitle(title);
    setToolTip(title.toHtmlEscaped());
    d->SetTitle(title);
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
        // The close button's name carries the title too.
        if (QWidget *close = TabButtonAccessible::CloseButton(this)) {
            QAccessibleEvent closeEvent(close, QAccessible::NameChanged);
            QAccessible::updateAccessibility(&closeEvent);
        }
    }
}

void BrowserTabButtonBase::SetIconUrl(const QString &url)
{
    Q_D(BrowserTabButtonBase);
    d->requestedIconUrl = url;
    if (d->recordsIconUrl)
        d->tabData->SetIconUrl(url);
    VosImageCache *cache = VosImageCache::Instance();
    // One connection is enough however often the icon is asked for: the answer for an
    // older address is ignored anyway.
    if (!d->iconConnection)
        d->iconConnection = connect(cache, &VosImageCache::SigRequestImageFinished, this,
                                    &BrowserTabButtonBase::SlotRequestImageFinished);
    cache->RequestImage(url, false);
}

void BrowserTabButtonBase::SlotRequestImageFinished(bool success, const QString &url, const QString &localPath)
{
    Q_D(BrowserTabButtonBase);
    // Answers to earlier requests (the tab navigated since) must not overwrite the icon.
    if (url != d->requestedIconUrl)
        return;
    disconnect(d->iconConnection);
    d->iconConnection = QMetaObject::Connection();
    if (success) {
        if (QFileInfo::exists(localPath))
            d->iconPath = localPath;
    } else {
        d->iconPath.clear();
    }
    d->UpdateIcon();
}

void BrowserTabButtonBase::SetChecked(bool checked)
{
    Q_D(BrowserTabButtonBase);
    d->SetChecked(checked);
    // Checked or unchecked from outside its bar (the bar itself calls the private
    // class): the bar can no longer tell which of its buttons are checked.
    if (d->bar && d->listed)
        BrowserTabBarBasePrivate::get(d->bar)->checkedKnown = false;
}

bool BrowserTabButtonBase::IsChecked() const
{
    Q_D(const BrowserTabButtonBase);
    return d->checked;
}

void BrowserTabButtonBase::SetPressed()
{
    Q_D(BrowserTabButtonBase);
    d->SetPressed();
}

void BrowserTabButtonBase::SetReleased()
{
    Q_D(BrowserTabButtonBase);
    d->SetReleased();
}

bool BrowserTabButtonBase::IsPressed() const
{
    Q_D(const BrowserTabButtonBase);
    return d->pressed;
}

bool BrowserTabButtonBase::IsHovered() const
{
    Q_D(const BrowserTabButtonBase);
    return d->hovered;
}

void BrowserTabButtonBase::LoadStart()
{
    Q_D(BrowserTabButtonBase);
    d->LoadStart();
}

void BrowserTabButtonBase::LoadFinished()
{
    Q_D(BrowserTabButtonBase);
    d->LoadFinished();
}

bool BrowserTabButtonBase::IsLoading() const
{
    Q_D(const BrowserTabButtonBase);
    return d->loading;
}

QString BrowserTabButtonBase::GetRequestedIconUrl() const
{
    Q_D(const BrowserTabButtonBase);
    return d->requestedIconUrl;
}

QString BrowserTabButtonBase::GetIconPath() const
{
    Q_D(const BrowserTabButtonBase);
    return d->iconPath;
}

void BrowserTabButtonBase::ReloadIcon()
{
    Q_D(BrowserTabButtonBase);
    d->ChooseIconSource();
    d->UpdateIcon();
}

QPoint BrowserTabButtonBase::LastPressGlobalPos() const
{
    Q_D(const BrowserTabButtonBase);
    return d->lastPressGlobalPos;
}

void BrowserTabButtonBase::SlotCloseClicked()
{
    Q_D(BrowserTabButtonBase);
    // A copy: the receivers may remove the tab and delete this button.
    const TabDataPtr tab = d->tabData;
    Q_EMIT SigCloseClicked(tab);
}

void BrowserTabButtonBase::mousePressEvent(QMouseEvent *event)
{
    Q_D(BrowserTabButtonBase);
    event->accept();
    d->lastPressGlobalPos = KelEventGlobalPos(event);
    // The receivers may remove this tab and even delete the button (or its bar): keep
    // the record and watch the button across each emission.
    const TabDataPtr tab = d->tabData;
    const QPointer<BrowserTabButtonBase> self(this);
    if (event->button() == Qt::LeftButton) {
        Q_EMIT SigChangeClicked(tab);
        if (!self || tab->IsHomePage())
            return;
        d->LeftPressed();
        Q_EMIT SigButtonPressed();
    } else if (event->button() == Qt::RightButton && !d->pressed) {
        d->rightPressSerial = ++BrowserTabButtonBasePrivate::pressSerial;
        Q_EMIT SigMenuClicked(tab);
    }
}

void BrowserTabButtonBase::mouseDoubleClickEvent(QMouseEvent *event)
{
    Q_D(BrowserTabButtonBase);
    event->accept();
    if (d->BarClosesOnDoubleClick()) {
        const TabDataPtr tab = d->tabData;
        Q_EMIT SigCloseClicked(tab);
    }
}
