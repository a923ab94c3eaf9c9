// SPDX-License-Identifier: MIT
#pragma once

#include "hometabpolicybar.h"

#include <KelTabContainer/browsertabbar.h>
#include <KelTabContainer/browsertabbutton.h>

/**
 * The window's classic tab strip: BrowserTabBar with the window's tab policy
 * (HomeTabPolicyBar). The classic bar has its own new-tab button and no checked icon,
 * so the policy and the plug-in's icon are all it adds.
 */
class HomeTabBar : public HomeTabPolicyBar<BrowserTabBar>
{
    Q_OBJECT
public:
    /** The class of the bar's tab buttons. */
    using Button = BrowserTabButton;

    explicit HomeTabBar(const ClosedTabStack *closedTabs, QWidget *parent = nullptr);
    ~HomeTabBar() override;

protected:
    QString GetPluginIconUrl(const QString &pluginCode) override;
};
