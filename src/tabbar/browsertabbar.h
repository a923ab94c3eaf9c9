// SPDX-License-Identifier: MIT
#pragma once

#include "browsertabbarbase.h"
#include "closeactivetype.h"
#include "keltabcontainer_export.h"

class BrowserTabBarPrivate;
class QPixmap;

/**
 * The classic tab strip: overlapping painted tabs (BrowserTabButton) from left to
 * right, followed by a new-tab button ("TabBarNewTabButton"), without scrolling.
 *
 * Layout: every movable tab gets the same width, from MaxButtonWidth() (164) down to
 * MinButtonWidth() (60) as tabs are added; neighbours overlap by ButtonSpacing()
 * pixels. The first tabs that the host's FixedTabCount() names share
 * FixedTabTotalWidth(). The new-tab button follows the last tab, or stands at the
 * bar's right end once the tabs are squeezed; it emits SigAddNewTab(). When a tab is
 * closed with its close button, the other tabs keep their widths while the pointer
 * stays on the bar, so that the next close button comes to lie under the pointer;
 * 200 ms after the pointer leaves the bar, the tabs fit the bar again.
 *
 * A tab dragged sideways follows the pointer and takes a neighbour's place once it
 * covers enough of it; tabs before SetFirstIndex() stay in place. While a tab is
 * dragged the new-tab button is hidden.
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT BrowserTabBar : public BrowserTabBarBase
{
    Q_OBJECT
public:
    /**
     * An empty bar with its new-tab button and without a menu: call InitMenu() once the
     * subclass is in place, and SetFirstIndex() with the number of fixed tabs.
     */
    explicit BrowserTabBar(QWidget *parent = nullptr);
    /** Deletes the bar with its new-tab button and background cache (see ~BrowserTabBarBase()). */
    ~BrowserTabBar() override;

    /** Hides the new-tab button for good: it stays hidden after drags too. */
    void HideNewTabButton();
    /**
     * The painted background for a tab button, from the bar's shared caches: one for
     * each of the few widths its tabs have at a time.
     * @return a pixmap owned by the bar, valid until buttons of several other widths
     * have asked; null for a width of 0 or less.
     */
    QPixmap *GetButtonBg(int width, bool checked, bool hovered);

    /** Gap between the new-tab button and the bar's right end: 4 design pixels. */
    int ButtonMarginRight() const;
    /** y of every tab: 4 design pixels. */
    int ButtonMarginTop() const;
    /** Inner padding of a tab: 16 design pixels. */
    int ButtonPadding() const;
    /** The overlap of neighbouring tabs: 2 design pixels. */
    int ButtonSpacing() const;

protected:
    /** Which tab becomes current when the current one is removed. Default: CloseActiveNext. */
    virtual CloseActiveType GetCloseType();
    /** The icon URL of a plug-in tab, by the tab's title. Default: empty. */
    virtual QString GetPluginIconUrl(const QString &pluginCode);

    /** Diagnostics: background pixmaps built so far by the bar's cache (see BrowserTabButtonBg::BuildCount). */
    int ButtonBgBuildCount() const;

private:
    Q_DECLARE_PRIVATE(BrowserTabBar)
};
