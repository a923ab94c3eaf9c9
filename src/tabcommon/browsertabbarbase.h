// SPDX-License-Identifier: MIT
#pragma once

#include "idpiadapter.h"
#include "keltabcontainer_export.h"
#include "tabdata.h"

#include <QFrame>
#include <QRect>
#include <QStringList>

#include <memory>

class BrowserTabBarBasePrivate;
class BrowserTabButtonBase;
class ITabManager;

/**
 * What the two browser tab strips have in common: a list of tabs, each a TabData
 * record shown by a tab button, one current tab, a context menu of tab commands,
 * dragging, and the "closing mode" that keeps the tabs' widths under the pointer
 * while the user closes them one after another.
 *
 * The strips are BrowserTabBarEx (scrolling) and BrowserTabBar (classic). A host may
 * hold either as a BrowserTabBarBase and drive it: add, insert, move and remove tabs,
 * choose the current one, set titles and icons. The bar never opens, closes or
 * activates a page by itself: it reports the user's intent by signals
 * (currentChanged(), tabCloseRequested(), SigCloseOtherTab() and the others) and the
 * host answers by calling the bar, also from inside those signals (it may remove
 * tabs, change the current tab, or delete the bar there).
 *
 * A host subclasses a bar to give its policy: FixedTabCount() and FixedTabTotalWidth()
 * for tabs that never move, the Check... operations for the menu, IsDoubleCloseTab(),
 * and the bar's own close and icon policy. It calls InitMenu() once after
 * construction, and SetFirstIndex() with the lowest index a dragged tab may take.
 *
 * A strip whose last tab is removed lays nothing out until a tab comes again: its
 * frames and the new-tab button stay where the last layout put them, through resizes
 * too. Only the classic strip's new-tab button, given a new size by a change of
 * scale, goes after the empty strip then.
 *
 * Indexes count from 0 at the left in display order; -1 means none. An index out of
 * range is ignored (or gives an empty result), except by setCurrentIndex(), which has
 * no lower bound. All sizes are design pixels at 96 dpi scaled for the screen by
 * DpiTool. GUI thread only.
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT BrowserTabBarBase : public QFrame, public IDpiAdapter
{
    Q_OBJECT
public:
    /** Deletes the bar with its tab buttons, menu and drag popup; allowed from inside the bar's signals. */
    ~BrowserTabBarBase() override;

    /**
     * Builds the tab context menu ("BrowserTabBarMenu"). Call once after construction,
     * once the subclass is in place: it asks IsShowRecoveryItem(). Later calls do
     * nothing. Until it is called, a right click on a tab opens no menu.
     */
    void InitMenu();

    /**
     * Appends a tab.
     * @param tab      the tab's record; a null record is refused (returns -1)
     * @param iconPath a local icon file to start with
     * @param loading  start with the loading indicator turning
     * @return the new tab's index
     */
    int addTab(TabDataPtr tab, const QString &iconPath = QString(), bool loading = false);
    /**
     * Inserts a tab before @p index; an index out of range is taken as the nearest end.
     * The current tab stays the same tab (currentIndex() grows when the new tab lies
     * at or before it).
     * @note currentChanged() is not emitted.
     * @return the new tab's index, or -1 for a null @p tab
     */
    int insertTab(int index, TabDataPtr tab, const QString &iconPath = QString(), bool loading = false);
    /**
     * Removes a tab; its button is deleted later. When the tab was the current one, the
     * neighbour that the bar's GetCloseType() names becomes current first, so
     * currentChanged() reports the neighbour's index as it is before the removal.
     * @note When a tab left of the current one goes, currentChanged() is not emitted.
     * Out-of-range indexes are ignored.
     */
    void removeTab(int index);
    /**
     * Moves the tab at @p from to @p to; the current tab stays the same tab.
     * @note Nothing is emitted. Out-of-range indexes are ignored.
     */
    void moveTab(int from, int to);

    /** @return the number of tabs, fixed tabs included. */
    int count() const;
    /** The current tab's index; -1 (or the negative index last set) when none is current. */
    int currentIndex() const;
    /** The same as currentIndex(). */
    int GetCurrentIndex() const;

    /** @return the record of the tab at @p index, null when out of range. */
    TabDataPtr GetTabData(int index) const;
    /** @return the record of the current tab, null when no tab is current. */
    TabDataPtr GetCurrentTabData() const;
    /** @return the first tab whose record equals @p tab (TabData::IsEqual), -1 if none. */
    int GetIndexByTabData(TabDataPtr tab) const;
    /** @return the first tab with exactly this title (case-sensitive), -1 if none. */
    int GetIndexByName(const QString &name) const;
    /** @return the first tab with exactly this id, -1 if none. */
    int GetIndexByTabId(const QString &tabId) const;
    /** Every tab's title, in tab order. */
    QStringList GetAllTabTitles() const;

    /** Sets a tab's title. @note Empty titles and out-of-range indexes are ignored. */
    void setTabText(int index, const QString &text);
    /** Asks the icon cache for a tab's icon. @note Empty addresses and out-of-range indexes are ignored. */
    void setTabIcon(int index, const QString &iconUrl);
    /** Turns a tab's loading indicator on; out-of-range indexes are ignored. */
    void LoadStart(int index);
    /** Turns a tab's loading indicator off; out-of-range indexes are ignored. */
    void LoadFinished(int index);
    /** The icon address last asked for the current tab; empty without a current tab. */
    QString CurrentIconUrl() const;
    /** The local icon file of the current tab; empty without a current tab or icon. */
    QString CurrentIconLocalPath() const;

    /** The lowest index a dragged tab may take; at least FixedTabCount() in practice. */
    void SetFirstIndex(int index);
    /** @return the lowest index a dragged tab may take, as set by SetFirstIndex() (0 initially). */
    int GetFirstIndex() const;
    /** Stores the host's manager; the bar never calls it and does not own it. */
    void SetTabManager(ITabManager *manager);
    /** @return the manager given to SetTabManager(), null if none was given. */
    ITabManager *GetTabManager() const;

    /**
     * The widget that shows the tab at @p index, for style sheets and inspection; null
     * when out of range. The bar owns it; it is deleted (later) when its tab is removed.
     */
    BrowserTabButtonBase *TabButton(int index) const;
    /** The tab's rectangle in the bar's coordinates; empty when out of range. */
    QRect tabRect(int index) const;

    /** Width of every movable tab as last laid out (0 before the first layout). */
    int ButtonWidth() const;
    /** Height of every tab: 32 design pixels. */
    int ButtonHeight() const;
    /** Widest movable tab. */
    int MaxButtonWidth() const;
    /** Narrowest movable tab. */
    int MinButtonWidth() const;
    /** Unchecked tabs this wide or narrower hide their close button (the classic bar's show it while hovered). */
    int NoCloseButtonWidth() const;
    /** Suggested width of a home tab, for subclasses. */
    int ButtonHomepageWidth() const;

    /** Re-applies every scaled size after the DPI factor changed. */
    void AdjustForDpi() override;

public Q_SLOTS:
    /**
     * Makes @p index the current tab and emits currentChanged(). A negative index
     * leaves no tab current (currentIndex() then returns it as given).
     * @note Nothing happens, and nothing is emitted, for the current index or an
     * index >= count().
     */
    void setCurrentIndex(int index);

Q_SIGNALS:
    /** The current tab changed; @p index is negative when no tab is current. */
    void currentChanged(int index);
    /**
     * The user asked to close a tab (close button, double click or menu). A host may
     * call removeTab() from inside. After a close button or a double click the other
     * tabs keep their widths until the pointer has left the bar for 200 ms, so that
     * the next close button comes to lie under the pointer.
     */
    void tabCloseRequested(int index);
    /** Ask the host for a new tab (the classic bar's new-tab button; a host's own "+"). */
    void SigAddNewTab();
    /** The context menu asks to close every tab but the one at @p index. */
    void SigCloseOtherTab(int index);
    /** The context menu asks to close the tabs left of @p index. */
    void SigCloseLeftTab(int index);
    /** The context menu asks to close the tabs right of @p index. */
    void SigCloseRightTab(int index);
    /** The context menu asks to reopen recently closed tabs. */
    void SigRecoverRecentlyTab();

protected Q_SLOTS:
    // The context menu's commands: each emits its signal for the tab whose menu was
    // opened, with that tab's present index.
    /**
     * The menu's "Close tab": emits tabCloseRequested() for the menu's tab. Unlike a
     * close button it does not freeze the widths.
     * @note Nothing is emitted once the menu's tab is gone.
     */
    void SlotCloseCurTab();
    /**
     * The menu's "Close other tabs": emits SigCloseOtherTab() for the menu's tab.
     * @note Nothing is emitted once the menu's tab is gone.
     */
    void SlotCloseOtherTab();
    /**
     * The menu's "Close left tabs": emits SigCloseLeftTab() for the menu's tab.
     * @note Nothing is emitted once the menu's tab is gone.
     */
    void SlotCloseLeftTab();
    /**
     * The menu's "Close right tabs": emits SigCloseRightTab() for the menu's tab.
     * @note Nothing is emitted once the menu's tab is gone.
     */
    void SlotCloseRightTab();
    /** The menu's "Recover recently closed tabs": emits SigRecoverRecentlyTab(). */
    void SlotRecoverRecentlyTab();
    // The tab buttons' signals; a null or unknown tab is ignored.
    /** Makes the pressed tab current. */
    void SlotChangeClicked(TabDataPtr tab);
    /**
     * Emits tabCloseRequested() for the tab and freezes the widths (closing mode); the
     * tab stays until the host removes it.
     */
    void SlotCloseClicked(TabDataPtr tab);
    /**
     * Runs the context menu for the tab, modally at the point of the right click, and
     * lays the tabs out afresh once it has closed. The command signals are emitted
     * while it runs; a host may remove tabs, or delete the bar, from inside them.
     * A right click on another tab while the menu is open opens that tab's menu next.
     * @note Nothing happens before InitMenu().
     */
    void SlotMenuClicked(TabDataPtr tab);
    /** A movable tab was pressed: an invisible popup takes the mouse until the release. */
    void SlotButtonPressed();
    /** The pointer moved during a press: the tab follows it and the others make room. */
    void SlotButtonMove();
    /**
     * The press has ended: the tab drops into its slot. Escape during the drag puts it
     * back where it was.
     */
    void SlotButtonRelease();

protected:
    /**
     * Constructs the bar around @p dd, the private state of the strip being built (a
     * subclass of BrowserTabBarBasePrivate); the bar owns it from then on. Only the
     * two strips call it.
     */
    BrowserTabBarBase(BrowserTabBarBasePrivate &dd, QWidget *parent);

    // Policy for subclasses. The tab buttons ask IsDoubleCloseTab().

    /** Whether a double click on a tab asks to close it. Default: true. */
    virtual bool IsDoubleCloseTab() const;
    /** Whether the menu's "Close tab" is enabled for the tab at @p index. Default: true. */
    virtual bool CheckCloseCurItem(int index);
    /** Whether "Close right tabs" is enabled. Default: the menu's tab is not the last. */
    virtual bool CheckCloseRightItem(int index);
    /** Whether "Close other tabs" is enabled. Default: there are at least two tabs. */
    virtual bool CheckCloseOtherItem(int index);
    /** Whether "Close left tabs" is enabled. Default: the menu's tab is not the first. */
    virtual bool CheckCloseLeftItem(int index);
    /** Whether "Recover recently closed tabs" is enabled. Default: false. */
    virtual bool CheckRecoveryItem();
    /** Whether the menu has the recovery entry; asked once, by InitMenu(). Default: false. */
    virtual bool IsShowRecoveryItem();
    /**
     * Called after a dragged tab moved: once at the end of every press on a movable
     * tab of the scrolling bar, after every handled movement on the classic bar.
     * Default: nothing.
     */
    virtual void TabButtonMoved();
    /** Width of the fixed tabs at the start of the strip, in screen pixels. Default: 0. */
    virtual int FixedTabTotalWidth();
    /** Number of fixed tabs at the start of the strip. Default: 0. */
    virtual int FixedTabCount();

    /**
     * Claims the bar's own keys (arrows, Home, End, Enter, Space, Delete, Ctrl+W, Menu,
     * Shift+F10) in the shortcut override while the bar has the focus, so that they
     * come before the host's shortcut table; every other event goes to QFrame.
     */
    bool event(QEvent *event) override;
    /** Notes that the pointer may have left, so that closing mode can end 200 ms later. */
    void leaveEvent(QEvent *event) override;
    /** Lays the tabs out for the new width at once, also in closing mode. */
    void resizeEvent(QResizeEvent *event) override;
    /**
     * Moves the keyboard focus between tabs (Left, Right, Home, End) and acts on the
     * focused tab: Enter and Space make it current, Delete and Ctrl+W emit
     * tabCloseRequested(), Menu and Shift+F10 open its context menu. Other keys go to QFrame.
     */
    void keyPressEvent(QKeyEvent *event) override;
    /** Puts the keyboard focus on the current tab; the focus ring shows when the focus came by keyboard. */
    void focusInEvent(QFocusEvent *event) override;
    /** Hides the focus ring. */
    void focusOutEvent(QFocusEvent *event) override;

    /** The bar's private state, shared with the strip's own private class that derives from it. */
    std::unique_ptr<BrowserTabBarBasePrivate> const d_ptr;

private:
    Q_DECLARE_PRIVATE(BrowserTabBarBase)
};
