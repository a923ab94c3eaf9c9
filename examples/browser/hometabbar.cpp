// SPDX-License-Identifier: MIT
#include "hometabbar.h"

HomeTabBar::HomeTabBar(const ClosedTabStack *closedTabs, QWidget *parent)
    : HomeTabPolicyBar<BrowserTabBar>(closedTabs, parent)
{
}

HomeTabBar::~HomeTabBar() = default;

QString HomeTabBar::GetPluginIconUrl(const QString &pluginCode)
{
    Q_UNUSED(pluginCode)
    return PluginIcon();
}
