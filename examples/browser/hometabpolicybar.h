// SPDX-License-Identifier: MIT
#pragma once

#include "closedtabstack.h"

#include <QString>

class QWidget;

/**
 * The window's tab policy, laid over either of the library's bars (@p Bar is
 * BrowserTabBarEx or BrowserTabBar), so that it is written once for both:
 * - one fixed home tab, ButtonHomepageWidth() wide, which cannot be closed;
 * - "Close other tabs" and "Close left tabs" only when they would close something;
 * - the menu's recovery entry, enabled while the window remembers a closed tab.
 *
 * PluginIcon() is the icon of the demo's plug-in; each bar's subclass hands it out
 * itself, as the bars declare GetPluginIconUrl() differently (const on one only).
 */
template <typename Bar>
class HomeTabPolicyBar : public Bar
{
public:
    /** The home tab. */
    static constexpr int HomeTabCount = 1;

    /** @param closedTabs the window's closed tabs, asked when the menu opens (not owned) */
    explicit HomeTabPolicyBar(const ClosedTabStack *closedTabs, QWidget *parent = nullptr)
        : Bar(parent)
        , m_closedTabs(closedTabs)
    {
    }

    /** The icon of the Notes plug-in, the demo's only plug-in. */
    static QString PluginIcon() { return QStringLiteral(":/browser/icons/page_notes.png"); }

protected:
    int FixedTabCount() override { return HomeTabCount; }
    int FixedTabTotalWidth() override { return this->ButtonHomepageWidth(); }

    bool CheckCloseCurItem(int index) override { return index >= HomeTabCount; }

    bool CheckCloseOtherItem(int index) override
    {
        // The home tab stays: "others" are the closable tabs but the menu's own.
        const int closable = this->count() - HomeTabCount - (index >= HomeTabCount ? 1 : 0);
        return closable > 0;
    }

    bool CheckCloseLeftItem(int index) override { return index > HomeTabCount; }
    bool IsShowRecoveryItem() override { return true; }
    bool CheckRecoveryItem() override { return m_closedTabs && !m_closedTabs->IsEmpty(); }

private:
    const ClosedTabStack *m_closedTabs;
};
