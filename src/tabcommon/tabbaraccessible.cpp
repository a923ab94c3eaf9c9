// SPDX-License-Identifier: MIT
#include "tabbaraccessible_p.h"

#include "browsertabbarbase.h"
#include "browsertabbarbase_p.h"
#include "browsertabbuttonbase.h"

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
    children << bar->d_func()->AccessibleControls();
    return children;
}

int TabBarAccessible::childCount() const
{
    return Children().size();
}

QAccessibleInterface *TabBarAccessible::child(int index) const
{
    const QList<QWidget *> children = Children();
    if (index < 0 || index >= children.size())
        return nullptr;
    return QAccessible::queryAccessibleInterface(children.at(index));
}

int TabBarAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    if (!child || !child->object() || !child->object()->isWidgetType())
        return -1;
    return Children().indexOf(static_cast<QWidget *>(child->object()));
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
    BrowserTabButtonBase *button = bar->TabButton(bar->d_func()->FocusIndex());
    return button ? QAccessible::queryAccessibleInterface(button) : nullptr;
}
