// SPDX-License-Identifier: MIT
#include "tabbaraccessible_p.h"

#include "browsertabbarbase.h"
#include "browsertabbarbase_p.h"
#include "browsertabbuttonbase.h"

#include <QCoreApplication>

TabBarAccessible::TabBarAccessible(BrowserTabBarBase *bar)
    : QAccessibleWidget(bar, QAccessible::PageTabList)
{
}

BrowserTabBarBase *TabBarAccessible::Bar() const
{
    return static_cast<BrowserTabBarBase *>(widget());
}

// The tabs in display order, then the strip's own buttons. The frames that hold the
// tabs are left out, so that the tabs are the list's direct children.
QList<QWidget *> TabBarAccessible::Children() const
{
    QList<QWidget *> children;
    const BrowserTabBarBase *bar = Bar();
    for (int i = 0; i < bar->count(); ++i)
        children << bar->TabButton(i);
    children << BrowserTabBarBasePrivate::get(bar)->AccessibleControls();
    return children;
}

// A client walks thousands of tabs one index at a time: answer each from the tab
// list directly rather than building the whole list per call.
int TabBarAccessible::childCount() const
{
    return Bar()->count() + BrowserTabBarBasePrivate::get(Bar())->AccessibleControls().size();
}

QAccessibleInterface *TabBarAccessible::child(int index) const
{
    const BrowserTabBarBase *bar = Bar();
    if (index < 0)
        return nullptr;
    if (index < bar->count())
        return QAccessible::queryAccessibleInterface(bar->TabButton(index));
    const QList<QWidget *> controls = BrowserTabBarBasePrivate::get(bar)->AccessibleControls();
    index -= bar->count();
    return index < controls.size() ? QAccessible::queryAccessibleInterface(controls.at(index)) : nullptr;
}

int TabBarAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    if (!child || !child->object() || !child->object()->isWidgetType())
        return -1;
    const BrowserTabBarBase *bar = Bar();
    auto *widget = static_cast<QWidget *>(child->object());
    if (auto *button = qobject_cast<BrowserTabButtonBase *>(widget)) {
        const int index = BrowserTabBarBasePrivate::get(bar)->buttons.indexOf(button);
        if (index >= 0)
            return index;
    }
    const int control = BrowserTabBarBasePrivate::get(bar)->AccessibleControls().indexOf(widget);
    return control < 0 ? -1 : bar->count() + control;
}

QAccessibleInterface *TabBarAccessible::childAt(int x, int y) const
{
    const QPoint global(x, y);
    // The strip's own buttons lie above the tabs they may cover.
    const QList<QWidget *> children = Children();
    for (int i = children.size() - 1; i >= 0; --i) {
        QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(children.at(i));
        if (iface && !iface->state().invisible && iface->rect().contains(global))
            return iface;
    }
    return nullptr;
}

QAccessibleInterface *TabBarAccessible::focusChild() const
{
    const BrowserTabBarBase *bar = Bar();
    if (!bar->hasFocus())
        return nullptr;
    BrowserTabButtonBase *button = bar->TabButton(BrowserTabBarBasePrivate::get(bar)->FocusIndex());
    return button ? QAccessible::queryAccessibleInterface(button) : nullptr;
}

// A screen reader says the list's name when the focus enters it; a host that has a
// better one (several windows, a second strip) sets the bar's accessibleName.
QString TabBarAccessible::text(QAccessible::Text t) const
{
    const QString text = QAccessibleWidget::text(t);
    if (t == QAccessible::Name && text.isEmpty())
        return QCoreApplication::translate("BrowserTabBarBase", "Tabs");
    return text;
}
