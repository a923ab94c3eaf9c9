// SPDX-License-Identifier: MIT
#include "tabbuttonaccessible_p.h"

#include "browsertabbarbase.h"
#include "browsertabbarbase_p.h"
#include "browsertabbuttonbase.h"
#include "browsertabbuttonbase_p.h"
#include "tabaccessible_p.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QPointer>
#include <QWindow>

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

// The close button of a tab that has not made it yet, as its widget's interface
// (TabControlAccessible) would present it: a button named after the tab, shown or not
// by the tab's state, that asks to close the tab when pressed.
class CloseStandInAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    explicit CloseStandInAccessible(BrowserTabButtonBase *tab) : m_tab(tab) {}

    bool isValid() const override { return m_tab; }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override
    {
        return m_tab && m_tab->window() ? m_tab->window()->windowHandle() : nullptr;
    }
    QAccessibleInterface *focusChild() const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QAccessibleInterface *parent() const override
    {
        return m_tab ? QAccessible::queryAccessibleInterface(m_tab.data()) : nullptr;
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QString text(QAccessible::Text t) const override
    {
        if (t != QAccessible::Name || !m_tab)
            return QString();
        return QCoreApplication::translate("BrowserTabBarBase", "Close tab %1").arg(TabAccessible::TabName(m_tab));
    }
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override
    {
        // A hidden widget has no rectangle either.
        if (state().invisible)
            return QRect();
        const QRect place = TabButtonAccessible::CloseButtonPlace(m_tab);
        return QRect(m_tab->mapToGlobal(place.topLeft()), place.size());
    }
    QAccessible::Role role() const override { return QAccessible::Button; }
    QAccessible::State state() const override
    {
        QAccessible::State st;
        if (!m_tab || !m_tab->isVisible() || !TabButtonAccessible::CloseButtonWouldShow(m_tab))
            st.invisible = true;
        if (m_tab && !m_tab->isEnabled())
            st.disabled = true;
        return st;
    }
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
    }
    QStringList actionNames() const override { return {QAccessibleActionInterface::pressAction()}; }
    void doAction(const QString &actionName) override
    {
        if (actionName == QAccessibleActionInterface::pressAction() && m_tab && m_tab->isEnabled())
            m_tab->SlotCloseClicked();
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    QPointer<BrowserTabButtonBase> m_tab;
};

} // namespace

TabButtonAccessible::TabButtonAccessible(BrowserTabButtonBase *button)
    : QAccessibleWidget(button, QAccessible::PageTab)
{
}

TabButtonAccessible::~TabButtonAccessible()
{
    if (m_standIn && QAccessible::accessibleInterface(m_standIn))
        QAccessible::deleteAccessibleInterface(m_standIn);
}

bool TabButtonAccessible::CloseButtonWouldShow(const BrowserTabButtonBase *button)
{
    return BrowserTabButtonBasePrivate::get(button)->CloseButtonWouldShow();
}

QRect TabButtonAccessible::CloseButtonPlace(const BrowserTabButtonBase *button)
{
    return BrowserTabButtonBasePrivate::get(button)->CloseButtonPlace();
}

QAccessibleInterface *TabButtonAccessible::Close() const
{
    BrowserTabButtonBase *button = Button();
    QWidget *close = CloseButton(button);
    if (close || !BrowserTabButtonBasePrivate::get(button)->CloseButtonMadeLater()) {
        // The widget is back (or never went): its own interface stands for it.
        if (m_standIn) {
            if (QAccessible::accessibleInterface(m_standIn))
                QAccessible::deleteAccessibleInterface(m_standIn);
            m_standIn = 0;
        }
        return close ? QAccessible::queryAccessibleInterface(close) : nullptr;
    }
    if (QAccessibleInterface *standIn = m_standIn ? QAccessible::accessibleInterface(m_standIn) : nullptr)
        return standIn;
    auto *standIn = new CloseStandInAccessible(button);
    m_standIn = QAccessible::registerAccessibleInterface(standIn);
    return standIn;
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
    return Close() ? 1 : 0;
}

QAccessibleInterface *TabButtonAccessible::child(int index) const
{
    return index == 0 ? Close() : nullptr;
}

int TabButtonAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    QAccessibleInterface *close = Close();
    return close && child == close ? 0 : -1;
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
    if (bar && bar->hasFocus() && bar->TabButton(BrowserTabBarBasePrivate::get(bar)->FocusIndex()) == button)
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
               visible.width() < button->width() - BrowserTabBarBasePrivate::get(bar)->TabOverlap()) {
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
        BrowserTabBarBasePrivate::get(bar)->SetFocusIndex(bar->GetIndexByTabData(button->GetTabData()));
    }
}
