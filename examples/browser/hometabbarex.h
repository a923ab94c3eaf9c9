#pragma once

#include <KelTabContainer/browsertabbarex.h>
#include <KelTabContainer/browsertabbuttonex.h>

class ClosedTabStack;

/**
 * The window's scrolling tab strip: BrowserTabBarEx with one fixed home tab.
 *
 * The policy a host gives the bar: the home tab sits in the fixed area, a
 * ButtonHomepageWidth() wide, and can be neither closed nor dragged past; the current
 * web tab shows a reload icon under the pointer; the context menu has the recovery
 * entry, enabled while the window remembers a closed tab.
 */
class HomeTabBarEx : public BrowserTabBarEx
{
    Q_OBJECT
public:
    /** @param closedTabs the window's closed tabs, asked when the menu opens (not owned) */
    /** The home tab. */
    static constexpr int HomeTabCount = 1;
    /** The class of the bar's tab buttons. */
    using Button = BrowserTabButtonEx;

    explicit HomeTabBarEx(const ClosedTabStack *closedTabs, QWidget *parent = nullptr);
    ~HomeTabBarEx() override;

Q_SIGNALS:
    /** The reload icon of the current tab was clicked. */
    void SigReloadIconClicked(int index);

protected:
    int FixedTabCount() override;
    int FixedTabTotalWidth() override;
    QString GetCheckedIcon(QSharedPointer<TabData> tab) override;
    QString GetPluginIconUrl(const QString &pluginCode) const override;
    void TabIconClicked(QSharedPointer<TabData> tab, QPoint globalPos) override;
    bool CheckCloseCurItem(int index) override;
    bool CheckCloseOtherItem(int index) override;
    bool CheckCloseLeftItem(int index) override;
    bool IsShowRecoveryItem() override;
    bool CheckRecoveryItem() override;

private:
    const ClosedTabStack *m_closedTabs;
};
