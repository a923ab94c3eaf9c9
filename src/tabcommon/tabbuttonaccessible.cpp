// SPDX-License-Identifier: MIT
#include "tabbuttonaccessible_p.h"

#include "browsertabbarbase.h"
#include "browsertabbarbase_p.h"
#include "browsertabbuttonbase.h"
#include "tabaccessible_p.h"

#include <QAbstractButton>

namespace {

// The part of @p button that its ancestors up to the bar leave in view, in the
// bar's coordinates: a scrolled-away tab is clipped by the viewport, a tab past the
// classic bar's end by the bar. Overlapping neighbours do not count.
QRect VisiblePart(const BrowserTabButtonBase *button, const BrowserTabBarBase *bar)
{
    QRect visible(button->mapTo(bar, QPoint(0, 0)), button->size());
    for (const QWidget *w = button->parentWidget(); w && w != bar; w = w->parentWidget())
        visible &= QRect(w->mapTo(bar, QPoint(0, 0)), w->size());
    return visible & bar->rect();
}

} // namespace

TabButtonAccessible::TabButtonAccessible(BrowserTabButtonBase *button)
    : QAccessibleWidget(button, QAccessible::PageTab)
{
}

BrowserTabButtonBase *TabButtonAccessible::Button() const
{
    return static_cast<BrowserTabButtonBase *>(widget());
}

QWidget *TabButtonAccessible::CloseButton(const BrowserTabButtonBase *button)
{
    const QList<QAbstractButton *> buttons = button->findChildren<QAbstractButton *>();
    for (QAbstractButton *candidate : buttons) {
        if (candidate->objectName().startsWith(QLatin1String("TabButtonCloseBtn")))
            return candidate;
    }
    return nullptr;
}

QAccessibleInterface *TabButtonAccessible::parent() const
{
    if (BrowserTabBarBase *bar = TabAccessible::BarOf(Button()))
        return QAccessible::queryAccessibleInterface(bar);
    return QAccessibleWidget::parent();
}

int TabButtonAccessible::childCount() const
{
    return CloseButton(Button()) ? 1 : 0;
}

QAccessibleInterface *TabButtonAccessible::child(int index) const
{
    QWidget *close = index == 0 ? CloseButton(Button()) : nullptr;
    return close ? QAccessible::queryAccessibleInterface(close) : nullptr;
}

int TabButtonAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    QWidget *close = CloseButton(Button());
    return close && child && child->object() == close ? 0 : -1;
}

QAccessibleInterface *TabButtonAccessible::childAt(int x, int y) const
{
    QAccessibleInterface *close = child(0);
    if (close && !close->state().invisible && close->rect().contains(x, y))
        return close;
    return nullptr;
}

QString TabButtonAccessible::text(QAccessible::Text t) const
{
    switch (t) {
    case QAccessible::Name:
        return TabAccessible::TabName(Button());
    case QAccessible::Description:
    case QAccessible::Help:
        return QString();
    default:
        return QAccessibleWidget::text(t);
    }
}

QAccessible::State TabButtonAccessible::state() const
{
    QAccessible::State st;
    const BrowserTabButtonBase *button = Button();
    const BrowserTabBarBase *bar = TabAccessible::BarOf(button);
    st.selectable = true;
    st.focusable = true;
    st.selected = button->IsChecked();
    st.disabled = !button->isEnabled();
    if (bar && bar->hasFocus() && bar->TabButton(bar->d_func()->FocusIndex()) == button)
        st.focused = true;
    if (!bar || !button->isVisibleTo(bar) || !bar->isVisible()) {
        st.invisible = true;
        st.offscreen = true;
        return st;
    }
    const QRect visible = VisiblePart(button, bar);
    if (visible.isEmpty()) {
        st.invisible = true;
        st.offscreen = true;
    } else if (visible.height() < button->height() ||
               visible.width() < button->width() - bar->d_func()->TabOverlap()) {
        st.offscreen = true; // partly cut off
    }
    return st;
}

QRect TabButtonAccessible::rect() const
{
    const BrowserTabButtonBase *button = Button();
    return QRect(button->mapToGlobal(QPoint(0, 0)), button->size());
}

QStringList TabButtonAccessible::actionNames() const
{
    return {QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::setFocusAction()};
}

void TabButtonAccessible::doAction(const QString &actionName)
{
    BrowserTabButtonBase *button = Button();
    BrowserTabBarBase *bar = TabAccessible::BarOf(button);
    if (!bar)
        return;
    if (actionName == QAccessibleActionInterface::pressAction()) {
        // The path of a click, so that the host sees the same signals.
        Q_EMIT button->SigChangeClicked(button->GetTabData());
    } else if (actionName == QAccessibleActionInterface::setFocusAction()) {
        bar->setFocus(Qt::OtherFocusReason);
        bar->d_func()->SetFocusIndex(bar->GetIndexByTabData(button->GetTabData()));
    }
}
