// SPDX-License-Identifier: MIT
#include "tabaccessible_p.h"

#include "browsertabbarbase.h"
#include "browsertabbuttonbase.h"
#include "tabbaraccessible_p.h"
#include "tabbuttonaccessible_p.h"
#include "tabcontrolaccessible_p.h"

#include <QAbstractButton>
#include <QCoreApplication>

namespace {

// Qt asks the factory once per class of the object's ancestry, most derived first; the
// first answer wins and is cached for the object's lifetime.
QAccessibleInterface *Factory(const QString &className, QObject *object)
{
    Q_UNUSED(className)
    if (!object || !object->isWidgetType())
        return nullptr;
    if (auto *bar = qobject_cast<BrowserTabBarBase *>(object))
        return new TabBarAccessible(bar);
    if (auto *button = qobject_cast<BrowserTabButtonBase *>(object))
        return new TabButtonAccessible(button);
    TabControlAccessible::Kind kind;
    if (auto *control = qobject_cast<QAbstractButton *>(object)) {
        if (TabControlAccessible::KindOf(control, &kind))
            return new TabControlAccessible(control, kind);
    }
    return nullptr;
}

} // namespace

void TabAccessible::InstallFactory()
{
    static bool installed = false;
    if (installed)
        return;
    installed = true;
    QAccessible::installFactory(&Factory);
}

QString TabAccessible::TabName(const BrowserTabButtonBase *button)
{
    const TabDataPtr tab = button ? button->GetTabData() : TabDataPtr();
    const QString title = tab ? tab->GetTitle() : QString();
    if (!title.isEmpty())
        return title;
    return QCoreApplication::translate("BrowserTabBarBase", "New tab");
}

BrowserTabBarBase *TabAccessible::BarOf(const QWidget *widget)
{
    for (QWidget *w = widget ? widget->parentWidget() : nullptr; w; w = w->parentWidget()) {
        if (auto *bar = qobject_cast<BrowserTabBarBase *>(w))
            return bar;
    }
    return nullptr;
}

BrowserTabButtonBase *TabAccessible::TabOf(const QWidget *widget)
{
    for (QWidget *w = widget ? widget->parentWidget() : nullptr; w; w = w->parentWidget()) {
        if (auto *button = qobject_cast<BrowserTabButtonBase *>(w))
            return button;
        if (qobject_cast<BrowserTabBarBase *>(w))
            return nullptr;
    }
    return nullptr;
}
