// SPDX-License-Identifier: MIT
#pragma once

#include "hometabpolicybar.h"

#include <KelTabContainer/browsertabbarex.h>

/**
 * The window's scrolling tab strip: BrowserTabBarEx with the window's tab policy
 * (HomeTabPolicyBar) and, on the current web tab, a reload icon under the pointer.
 */
class HomeTabBarEx : public HomeTabPolicyBar<BrowserTabBarEx>
{
    Q_OBJECT
public:
    explicit HomeTabBarEx(const ClosedTabStack *closedTabs, QWidget *parent = nullptr);

Q_SIGNALS:
    /** The reload icon of the current tab was clicked. */
    void SigReloadIconClicked(int index);

protected:
    QString GetPluginIconUrl(const QString &pluginCode) const override;
    QString GetCheckedIcon(QSharedPointer<TabData> tab) override;
    void TabIconClicked(QSharedPointer<TabData> tab, QPoint globalPos) override;
};
