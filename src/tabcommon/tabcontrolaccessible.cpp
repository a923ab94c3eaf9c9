// SPDX-License-Identifier: MIT
#include "tabcontrolaccessible_p.h"

#include "browsertabbarbase.h"
#include "browsertabbuttonbase.h"
#include "tabaccessible_p.h"

#include <QAbstractButton>
#include <QCoreApplication>

namespace {

QString Tr(const char *text)
{
    return QCoreApplication::translate("BrowserTabBarBase", text);
}

} // namespace

TabControlAccessible::TabControlAccessible(QAbstractButton *button, Kind controlKind)
    : QAccessibleWidget(button, QAccessible::Button)
    , kind(controlKind)
{
}

bool TabControlAccessible::KindOf(const QObject *object, Kind *kind)
{
    const QString name = object->objectName();
    if (name == QLatin1String("TabButtonCloseBtn") || name == QLatin1String("TabButtonCloseBtnEx"))
        *kind = Kind::CloseTab;
    else if (name == QLatin1String("TabButtonLeftArrowEx"))
        *kind = Kind::ScrollLeft;
    else if (name == QLatin1String("TabButtonRightArrowEx"))
        *kind = Kind::ScrollRight;
    else if (name == QLatin1String("TabBarNewTabButton"))
        *kind = Kind::NewTab;
    else
        return false;
    // Only inside a strip: a host's own widget may carry one of these names.
    return TabAccessible::BarOf(static_cast<const QWidget *>(object)) != nullptr;
}

QAbstractButton *TabControlAccessible::Button() const
{
    return static_cast<QAbstractButton *>(widget());
}

// A close button belongs to its tab, the other controls to the bar, whatever frames
// hold them.
QAccessibleInterface *TabControlAccessible::parent() const
{
    QWidget *owner = nullptr;
    if (kind == Kind::CloseTab)
        owner = TabAccessible::TabOf(Button());
    if (!owner)
        owner = TabAccessible::BarOf(Button());
    return owner ? QAccessible::queryAccessibleInterface(owner) : QAccessibleWidget::parent();
}

QString TabControlAccessible::text(QAccessible::Text t) const
{
    if (t != QAccessible::Name)
        return QAccessibleWidget::text(t);
    if (!Button()->accessibleName().isEmpty())
        return Button()->accessibleName();
    switch (kind) {
    case Kind::CloseTab:
        return Tr(QT_TRANSLATE_NOOP("BrowserTabBarBase", "Close tab %1")).arg(TabAccessible::TabName(TabAccessible::TabOf(Button())));
    case Kind::ScrollLeft:
        return Tr(QT_TRANSLATE_NOOP("BrowserTabBarBase", "Scroll tabs left"));
    case Kind::ScrollRight:
        return Tr(QT_TRANSLATE_NOOP("BrowserTabBarBase", "Scroll tabs right"));
    case Kind::NewTab:
        return Tr(QT_TRANSLATE_NOOP("BrowserTabBarBase", "New tab"));
    }
    return QString();
}

QAccessible::State TabControlAccessible::state() const
{
    QAccessible::State st = QAccessibleWidget::state();
    st.focusable = false; // reached through the bar's keys, never by Tab
    return st;
}

QStringList TabControlAccessible::actionNames() const
{
    return {QAccessibleActionInterface::pressAction()};
}

void TabControlAccessible::doAction(const QString &actionName)
{
    if (actionName == QAccessibleActionInterface::pressAction() && Button()->isEnabled())
        Button()->click();
}
