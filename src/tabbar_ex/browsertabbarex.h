// SPDX-License-Identifier: MIT
#pragma once

#include "browsertabbarbase.h"
#include "keltabcontainer_export.h"

#include <QPoint>

class BrowserTabBarExPrivate;
class QWheelEvent;

/**
 * Which tab becomes current when BrowserTabBarEx removes the current one.
 * @ingroup bars
 */
enum CloseActiveTypeEx : int {
    /** The right neighbour, or the left one when there is none on the right. */
    CloseActiveRightEx = 0,
    /** The left neighbour (none when the first tab goes). */
    CloseActiveLeftEx = 1,
};

/**
 * The extended, scrolling tab strip of a browser window.
 *
 * A fixed area at the left holds FixedTabCount() tabs that never scroll (typically
 * one home tab, FixedTabTotalWidth() pixels wide); a viewport right of it shows a
 * content strip with every other tab. The scrolling tabs share one width, from
 * MaxButtonWidth() (224) down to MinButtonWidth() (96); when even that does not fit,
 * the bar overflows: scroll arrows appear at both ends of the viewport, the wheel and
 * the arrows scroll the strip (animated, 20 ms a step) and showIndex() brings a tab
 * into view. The bar is 40 design pixels high.
 *
 * A host uses a subclass that overrides at least FixedTabCount() and
 * FixedTabTotalWidth(). The base class's FixedTabCount() is 0: such a bar lays out
 * every tab as a scrolling one and gives the fixed area no tabs.
 *
 * Thousands of tabs cost what a dozen do: a change lays out only the tabs it moves,
 * and a scrolling tab away from the visible part is hidden and holds none of its inner
 * widgets (icon, title, close button): it gets them within a tab's width of the view
 * and gives them up a viewport away from it. Every tab keeps the geometry of its place
 * all the same, hidden or not.
 * A host that moves or resizes tab buttons itself gets them laid out again at the
 * next change of widths, when closing mode ends or after a context menu.
 *
 * Internal frames carry object names for style sheets and tests: "TabBarFixedAreaEx",
 * "TabBarViewportEx", "TabBarContentEx" (the content strip, child of the viewport),
 * "TabBarLeftArrowFrameEx" and "TabBarRightArrowFrameEx" (holding "TabButtonLeftArrowEx",
 * "TabButtonRightArrowEx", "TabButtonLeftShadowEx" and "TabButtonRightShadowEx").
 * The bar itself is named "BrowserTabBarEx" unless it already has a name.
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT BrowserTabBarEx : public BrowserTabBarBase
{
    Q_OBJECT
public:
    /**
     * An empty bar without a menu: call InitMenu() once the subclass is in place, and
     * SetFirstIndex() with the number of fixed tabs.
     */
    explicit BrowserTabBarEx(QWidget *parent = nullptr);
    /** Stops the arrows' scrolling and deletes the bar (see ~BrowserTabBarBase()). */
    ~BrowserTabBarEx() override;

    /** Scrolls, animated, so that the scrolling tab at @p index is in view. Fixed tabs are ignored. */
    void showIndex(int index);
    /** Re-evaluates the icon of the current scrolling tab (after GetCheckedIcon() changed). */
    void UpdateCustomIcon();

    /** The bar's height: 40 design pixels. */
    int ButtonBarHeight() const;
    /** y of every tab: 4 design pixels. */
    int ButtonTop() const;

Q_SIGNALS:
    /** The context menu asks to reload the tab at @p index. */
    void SigRefreshTab(int index);
    /** The context menu asks to bookmark the tab at @p index; @p globalPos is its icon's place. */
    void SigAddFav(int index, QPoint globalPos);
    /** The context menu asks to copy the address of the tab at @p index. */
    void SigCopyLink(int index);
    /** The context menu asks to open the tab at @p index in the system browser. */
    void SigOpenInBrowser(int index);

protected Q_SLOTS:
    // The context menu's commands of this bar; like the shared ones they act on the
    // menu's tab, and on nothing once it is gone.
    /** The menu's "Refresh": emits SigRefreshTab() for the menu's tab. */
    void SlotRefreshTab();
    /** The menu's "Add Fav": emits SigAddFav() for the menu's tab, with its icon's global position. */
    void SlotAddFav();
    /** The menu's "Copy link": emits SigCopyLink() for the menu's tab. */
    void SlotCopyLink();
    /** The menu's "Open in Browser": emits SigOpenInBrowser() for the menu's tab. */
    void SlotOpenInBrowser();
    /** Hides the separators beside a hovered tab and shows them again when it is left. */
    void SlotHoverChanged(TabDataPtr tab, bool hovered);
    /** Calls TabIconClicked() for the sending button's tab. */
    void SlotIconClicked(TabDataPtr tab);
    /** Ends the frozen widths after a close (closing mode) and lays the tabs out afresh. */
    void SlotDelayTimeout();

private Q_SLOTS:
    void SlotLeftArrowClicked();
    void SlotRightArrowClicked();
    void SlotLeftArrowDoubleClicked();
    void SlotRightArrowDoubleClicked();
    void SlotLeftArrowPressed();
    void SlotRightArrowPressed();
    void SlotLeftArrowReleased();
    void SlotRightArrowReleased();
    void SlotArrowTimeout();

protected:
    // Policy for subclasses; the tab buttons ask the icon getters.

    /** The icon address of a plug-in tab. Default: none. */
    virtual QString GetPluginIconUrl(const QString &pluginCode) const;
    /** Which neighbour becomes current when the current tab is removed. Default: CloseActiveRightEx. */
    virtual CloseActiveTypeEx GetCloseType() const;
    /** Reserved for a hovered tab's icon. Default: none. */
    virtual QString GetHoverIcon(QSharedPointer<TabData> tab);
    /** The icon shown on the current tab while the pointer is over it; clicking it calls TabIconClicked(). Default: none. */
    virtual QString GetCheckedIcon(QSharedPointer<TabData> tab);
    /** Reserved for a dragged tab's icon. Default: none. */
    virtual QString GetPressedIcon(QSharedPointer<TabData> tab);
    /** The checked icon of @p tab was clicked at @p globalPos. Default: nothing. */
    virtual void TabIconClicked(QSharedPointer<TabData> tab, QPoint globalPos);

    /**
     * In overflow, one scroll step: towards the end for a turn towards the user (or
     * none), towards the start otherwise; the event is accepted. Without overflow the
     * event is left alone for the parent.
     */
    void wheelEvent(QWheelEvent *event) override;

private:
    Q_DECLARE_PRIVATE(BrowserTabBarEx)
};
