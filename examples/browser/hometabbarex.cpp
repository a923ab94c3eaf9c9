// SPDX-License-Identifier: MIT
#include "hometabbarex.h"

HomeTabBarEx::HomeTabBarEx(const ClosedTabStack *closedTabs, QWidget *parent)
    : HomeTabPolicyBar<BrowserTabBarEx>(closedTabs, parent)
{
}

QString HomeTabBarEx::GetPluginIconUrl(const QString &pluginCode) const
{
    Q_UNUSED(pluginCode)
    return PluginIcon();
}

QString HomeTabBarEx::GetCheckedIcon(QSharedPointer<TabData> tab)
{
    // Only pages that can reload offer the icon; a plug-in page has nothing to reload.
    if (tab && (tab->IsWeb() || tab->IsWebPopup()))
        return QStringLiteral(":/browser/icons/tab_reload.png");
    return QString();
}

void HomeTabBarEx::TabIconClicked(QSharedPointer<TabData> tab, QPoint globalPos)
{
    Q_UNUSED(globalPos)
    const int index = GetIndexByTabData(tab);
    if (index >= 0)
        Q_EMIT SigReloadIconClicked(index);
}
