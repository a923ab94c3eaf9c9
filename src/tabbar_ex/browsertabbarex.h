#pragma once

#include "idpiadapter.h"
#include "keltabcontainer_export.h"
#include "tabdata.h"

#include <QFrame>
#include <QPoint>
#include <QStringList>

#include <memory>

class BrowserTabBarExPrivate;
class BrowserTabButtonEx;
class ITabManager;

/** Which tab becomes current when BrowserTabBarEx removes the current one. */
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
 * MaxButtonWidth() down to MinButtonWidth(); when even that does not fit, the bar
 * overflows: scroll arrows appear at both ends of the viewport, the wheel and the
 * arrows scroll the strip (animated, 20 ms a step) and showIndex() brings a tab
 * into view.
 *
 * The bar never opens, closes or activates a page by itself. It reports intent by
 * signals (currentChanged(), tabCloseRequested(), the Sig... signals) and the host
 * answers by calling removeTab(), setCurrentIndex() and so on, also from inside
 * those signals.
 *
 * A host uses a subclass that overrides at least FixedTabCount() and
 * FixedTabTotalWidth(). The base class's FixedTabCount() is 0: such a bar lays out
 * every tab as a scrolling one and gives the fixed area no tabs.
 *
 * Internal frames carry object names for style sheets and tests: "TabBarFixedAreaEx",
 * "TabBarViewportEx", "TabBarContentEx" (the content strip, child of the viewport),
 * "TabBarLeftArrowFrameEx" and "TabBarRightArrowFrameEx" (holding "TabButtonLeftArrowEx",
 * "TabButtonRightArrowEx", "TabButtonLeftShadowEx" and "TabButtonRightShadowEx").
 * The bar itself is named "BrowserTabBarEx" unless it already has a name.
 *
 * Indexes count from 0 at the left in display order; -1 means none. Indexes out of
 * range are ignored (or give an empty result). GUI thread only.
 */
class KELTABCONTAINER_EXPORT BrowserTabBarEx : public QFrame, public IDpiAdapter
{
    Q_OBJECT
public:
    explicit BrowserTabBarEx(QWidget *parent = nullptr);
    ~BrowserTabBarEx() override;

    /**
     * Builds the tab context menu ("BrowserTabBarMenu"). Call once, after construction,
     * when the subclass is in place: it asks IsShowRecoveryItem(). Later calls do nothing.
     * Until it is called, a right click on a tab opens no menu.
     */
    void InitMenu();

    /**
     * Appends a tab.
     * @param tab      the tab's record; a null pointer is refused (returns -1)
     * @param iconPath a local icon file to start with
     * @param loading  start with the loading indicator turning
     * @return the new tab's index
     */
    int addTab(TabDataPtr tab, const QString &iconPath = QString(), bool loading = false);
    /**
     * Inserts a tab before @p index; an index out of range is taken as the nearest end.
     * The current tab stays the same tab (currentIndex() grows when the new tab lies
     * before it).
     * @note currentChanged() is not emitted.
     * @return the new tab's index, or -1 for a null @p tab
     */
    int insertTab(int index, TabDataPtr tab, const QString &iconPath = QString(), bool loading = false);
    /**
     * Removes a tab; its button is deleted later. When the tab was the current one, the
     * neighbour chosen by GetCloseType() becomes current first, so currentChanged()
     * reports the neighbour's index as it is before the removal.
     * @note When a tab left of the current one goes, currentChanged() is not emitted.
     */
    void removeTab(int index);
    /**
     * Makes @p index the current tab and emits currentChanged(). -1 unchecks every tab.
     * @note Nothing happens, and nothing is emitted, for the current index or an index >= count().
     */
    void setCurrentIndex(int index);
    /** Scrolls, animated, so that the scrolling tab at @p index is in view. Fixed tabs are ignored. */
    void showIndex(int index);

    int count() const;
    int currentIndex() const;
    int GetCurrentIndex() const;

    /** @return the record of the tab at @p index, null when out of range. */
    TabDataPtr GetTabData(int index) const;
    TabDataPtr GetCurrentTabData() const;
    /** @return the first tab whose record equals @p tab (TabData::IsEqual), -1 if none. */
    int GetIndexByTabData(TabDataPtr tab) const;
    /** @return the first tab with this exact title, -1 if none. */
    int GetIndexByName(const QString &name) const;
    /** @return the first tab with this exact id, -1 if none. */
    int GetIndexByTabId(const QString &tabId) const;
    /** Every tab's title, in tab order. */
    QStringList GetAllTabTitles() const;

    /** Sets a tab's title; an empty text is ignored. */
    void setTabText(int index, const QString &text);
    /** Asks the icon cache for a tab's icon; an empty address is ignored. */
    void setTabIcon(int index, const QString &iconUrl);
    void LoadStart(int index);
    void LoadFinished(int index);
    /** Re-evaluates the icon of the current scrolling tab (after GetCheckedIcon() changed). */
    void UpdateCustomIcon();
    /** The icon address last asked for the current tab; empty without a current tab. */
    QString CurrentIconUrl() const;
    /** The local icon file of the current tab; empty without a current tab. */
    QString CurrentIconLocalPath() const;

    /** The lowest index a dragged tab may take; at least FixedTabCount() in practice. */
    void SetFirstIndex(int index);
    /** Stores the host's manager; the bar never calls it and does not own it. */
    void SetTabManager(ITabManager *manager);
    ITabManager *GetTabManager() const;

    /** Width of every scrolling tab as last laid out. */
    int ButtonWidth() const;
    /** The bar's height: 40 design pixels. */
    int ButtonBarHeight() const;
    /** Height of a tab: 32 design pixels. */
    int ButtonHeight() const;
    /** y of every tab: 4 design pixels. */
    int ButtonTop() const;
    /** Widest scrolling tab: 224 design pixels. */
    int MaxButtonWidth() const;
    /** Narrowest scrolling tab, and the step of showIndex(): 96 design pixels. */
    int MinButtonWidth() const;
    /** An unchecked tab this wide or narrower hides its close button: 112 design pixels. */
    int NoCloseButtonWidth() const;
    /** Suggested width of a home tab, for subclasses: 84 design pixels. */
    int ButtonHomepageWidth() const;

    void AdjustForDpi() override;

Q_SIGNALS:
    /** The current tab changed; @p index is -1 when no tab is current. */
    void currentChanged(int index);
    /**
     * The user asked to close a tab (close button, double click or menu). A host may
     * call removeTab() from inside. After a close button or a double click the other
     * tabs keep their widths until the pointer has left the bar for 200 ms, so that
     * the next close button comes to lie under the pointer.
     */
    void tabCloseRequested(int index);
    /** For the host and subclasses. @note The bar itself never emits it. */
    void SigAddNewTab();
    /** The context menu asks to reload the tab at @p index. */
    void SigRefreshTab(int index);
    /** The context menu asks to bookmark the tab at @p index; @p globalPos is its icon's place. */
    void SigAddFav(int index, QPoint globalPos);
    /** The context menu asks to copy the address of the tab at @p index. */
    void SigCopyLink(int index);
    /** The context menu asks to open the tab at @p index in the system browser. */
    void SigOpenInBrowser(int index);
    /** The context menu asks to close every tab but the one at @p index. */
    void SigCloseOtherTab(int index);
    /** The context menu asks to close the tabs left of @p index. */
    void SigCloseLeftTab(int index);
    /** The context menu asks to close the tabs right of @p index. */
    void SigCloseRightTab(int index);
    /** The context menu asks to reopen recently closed tabs. */
    void SigRecoverRecentlyTab();

protected Q_SLOTS:
    // The context menu's commands: each emits its signal for the menu's tab.
    void SlotRefreshTab();
    void SlotAddFav();
    void SlotCopyLink();
    void SlotOpenInBrowser();
    void SlotCloseCurTab();
    void SlotCloseOtherTab();
    void SlotCloseLeftTab();
    void SlotCloseRightTab();
    void SlotRecoverRecentlyTab();
    // The tab buttons' signals; a null or unknown tab is ignored.
    /** Hides the separators beside a hovered tab and shows them again when it is left. */
    void SlotHoverChanged(TabDataPtr tab, bool hovered);
    /** Makes the pressed tab current. */
    void SlotChangeClicked(TabDataPtr tab);
    /**
     * Emits tabCloseRequested() for the tab and freezes the widths (closing mode); the
     * tab stays until the host removes it.
     */
    void SlotCloseClicked(TabDataPtr tab);
    /** Calls TabIconClicked() for the sending button's tab. */
    void SlotIconClicked(TabDataPtr tab);
    /**
     * Runs the context menu for the tab, modally at the cursor, and lays the tabs out
     * afresh once it has closed. The command signals are emitted while it runs; a
     * host may remove tabs, or delete the bar, from inside them.
     * @note Nothing happens before InitMenu(), or while the menu is already open.
     */
    void SlotMenuClicked(TabDataPtr tab);
    /**
     * A scrolling tab was pressed: an invisible popup takes the mouse until the
     * release. Fixed tabs do not move.
     */
    void SlotButtonPressed();
    /** The pointer moved during a press: the tab follows it and the others make room. */
    void SlotButtonMove();
    /** The press has ended: the tab drops into its slot and TabButtonMoved() is called. */
    void SlotButtonRelease();

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

protected Q_SLOTS:
    /** Ends the frozen widths after a close (closing mode) and lays the tabs out afresh. */
    void SlotDelayTimeout();

protected:
    // Policy for subclasses; the tab buttons ask the icon getters and IsDoubleCloseTab().

    /** The icon address of a plug-in tab. Default: none. */
    virtual QString GetPluginIconUrl(const QString &pluginCode) const;
    /** Whether a double click on a tab asks to close it. Default: true. */
    virtual bool IsDoubleCloseTab() const;
    /** Which neighbour becomes current when the current tab is removed. Default: CloseActiveRightEx. */
    virtual CloseActiveTypeEx GetCloseType() const;
    virtual QString GetHoverIcon(QSharedPointer<TabData> tab);
    /** The icon shown on the current tab while the pointer is over it; clicking it calls TabIconClicked(). Default: none. */
    virtual QString GetCheckedIcon(QSharedPointer<TabData> tab);
    virtual QString GetPressedIcon(QSharedPointer<TabData> tab);
    /** Whether the menu's "Close tab" is enabled. Default: true. */
    virtual bool CheckCloseCurItem(int index);
    /** Whether "Close right tabs" is enabled. Default: the menu's tab is not the last. */
    virtual bool CheckCloseRightItem(int index);
    /** Whether "Close other tabs" is enabled. Default: there are at least two tabs. */
    virtual bool CheckCloseOtherItem(int index);
    /** Whether "Close left tabs" is enabled. Default: the menu's tab is not the first. */
    virtual bool CheckCloseLeftItem(int index);
    /** Whether the recovery entry is enabled. Default: false. */
    virtual bool CheckRecoveryItem();
    /** Whether the menu has a recovery entry (asked once, by InitMenu()). Default: false. */
    virtual bool IsShowRecoveryItem();
    /**
     * Called once at the end of every press on a scrolling tab, moved or not, after
     * the tab has dropped into its slot. Default: nothing.
     * @note Not called when the pressed tab was removed during the drag.
     */
    virtual void TabButtonMoved();
    /** The checked icon of @p tab was clicked at @p globalPos. Default: nothing. */
    virtual void TabIconClicked(QSharedPointer<TabData> tab, QPoint globalPos);
    /** Width of the fixed area, in screen pixels. Default: 0. */
    virtual int FixedTabTotalWidth();
    /** Number of fixed tabs. Default: 0 (every tab scrolls). */
    virtual int FixedTabCount();

    /** Makes the button of a new tab in the fixed area or the content strip and wires it. */
    BrowserTabButtonEx *CreateTabButton(TabDataPtr tab, const QString &iconPath, bool loading);
    /** Computes the scrolling tabs' width for @p available pixels; sets the overflow state. */
    void ComputeButtonWidth(int available);
    /** Full relayout: widths, positions, frames, separators. */
    void ResizeButtons();
    /** Places the scrolling tabs side by side at their present widths, then the frames. */
    void ResetButtons();
    /** Sizes and places the fixed area, the viewport, the content strip and the arrow frames. */
    void SetContentWidth();
    /**
     * Shows every separator except at the current tab and its left neighbour, and, in
     * overflow, at the last fixed tab (it borders the left arrow).
     */
    void ResetSeparator();
    /** During a drag: every separator shows except at the dragged tab and its left neighbour. */
    void SetPressedSeparator();
    /**
     * During a drag: moves the dragged tab to the place its position asks for (the
     * shared rule of TabDragOrder: past a neighbour once it covers two thirds of it,
     * to firstIndex at the very start, to the end at the very end).
     */
    void SortButtons();
    /**
     * Shows or hides the menu's upper entries (refresh, add to favourites, copy link,
     * open in browser and their separator) by the kind of @p tab. The close entries
     * are always shown.
     */
    void CheckMenuVisible(TabDataPtr tab);
    /** Enables the close entries and the recovery entry by the Check... policy for the menu's tab. */
    void CheckMenuEnable();

    /** The button of the tab at @p index, null when out of range. */
    BrowserTabButtonEx *TabButton(int index) const;
    /** The content strip's x inside the viewport: 0 or negative. */
    int ScrollOffset() const;
    /** True when the scrolling tabs do not fit and the arrows are shown. */
    bool IsOverflow() const;
    /** Width given to the current scrolling tab. */
    int CurrentButtonWidth() const;

    void resizeEvent(QResizeEvent *event) override;
    void leaveEvent(QEvent *event) override;
    /**
     * In overflow, one scroll step: towards the end for a turn towards the user (or
     * none), towards the start otherwise; the event is accepted. Without overflow the
     * event is left alone for the parent.
     */
    void wheelEvent(QWheelEvent *event) override;

private:
    friend class BrowserTabButtonEx;

    void InitContent();
    void InitArrowFrame();
    void InitMoveProxy();
    void PlaceScrollingButtons();
    // Closing mode: layouts that keep the widths frozen under the mouse.
    void ResetDelayButtons();
    void ResizeLastButtons();
    void ResizeDelayArea();
    void ResizeDelayButtons();
    void ResetSortButtons();
    void ReleaseRetiredButtons();
    void CheckAreaOffset();
    void StartArrowTimer();
    void UpdateArrowState();
    void UpdateButtonForms();
    int MinOffset() const;
    int ScrollStep() const;

    std::unique_ptr<BrowserTabBarExPrivate> const d;
};
