// SPDX-License-Identifier: MIT
#pragma once

#include "hometabpolicybar.h"

#include <KelTabContainer/browsertabbar.h>

/**
 * The window's classic tab strip: BrowserTabBar with the window's tab policy
 * (HomeTabPolicyBar). The classic bar has its own new-tab button and no checked icon,
 * so the policy and the plug-in's icon are all it adds.
 */
class HomeTabBar : public HomeTabPolicyBar<BrowserTabBar>
{
    Q_OBJECT
public:
    using HomeTabPolicyBar<BrowserTabBar>::HomeTabPolicyBar;

protected:
    QString GetPluginIconUrl(const QString &pluginCode) override;
};
