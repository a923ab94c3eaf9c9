// SPDX-License-Identifier: MIT
#pragma once

// The private class of BrowserTabBarBase: the behaviour both strips share. Not part of
// the installed API. Each strip's private class derives from it and supplies its
// layout, its menu entries and its drag through the virtual operations below.

#include "browsertabbarbase.h"

#include <QList>
#include <QPoint>
#include <QPointer>
#include <QTimer>

class QKeyEvent;

#include <memory>
#include <vector>

class BrowserTabButtonBase;
class ITabManager;
class KelMenu;
class QAction;
class TabLeaveWatcher;
class TabFocusRing;
class TabMoveProxy;

class BrowserTabBarBasePrivate
{
    Q_DECLARE_PUBLIC(BrowserTabBarBase)
public:
    /** The design sizes that differ between the strips, in 96-dpi pixels. */
    struct Metrics
    {
        int maxButtonWidth;
        int minButtonWidth;
        int noCloseButtonWidth;
        int homepageWidth;
    };

    explicit BrowserTabBarBasePrivate(const Metrics &metrics);
    virtual ~BrowserTabBarBasePrivate();

    /** The private state of @p bar (not null). */
    static BrowserTabBarBasePrivate *get(BrowserTabBarBase *bar) { return bar->d_func(); }
    static const BrowserTabBarBasePrivate *get(const BrowserTabBarBase *bar) { return bar->d_func(); }

    BrowserTabBarBasePrivate(const BrowserTabBarBasePrivate &) = delete;
    BrowserTabBarBasePrivate &operator=(const BrowserTabBarBasePrivate &) = delete;

    /** Called by BrowserTabBarBase's constructor, once q_ptr is set. */
    void InitBase();

    BrowserTabBarBase *q_ptr = nullptr;
    const Metrics metrics;

    // One button per tab; list position = tab index.
    QList<BrowserTabButtonBase *> buttons;
    int currentIndex = -1;
    // The button the bar checked last: the only checked one, unless a host checked
    // buttons itself (checkedKnown false), which the next switch puts right.
    QPointer<BrowserTabButtonBase> checkedButton;
    bool checkedKnown = true;
    // True while MakeButton() makes a button: a button the bar makes itself gets its
    // inner widgets only once a layout shows it, which is what lets a strip hold
    // thousands of tabs.
    bool makingButton = false;
    int firstIndex = 0;    // lowest index a dragged tab may take
    int buttonWidth = 0;   // every movable tab
    int extraPixels = 0;   // movable tabs, from the first, that are one pixel wider
    ITabManager *tabManager = nullptr;

    // Closing mode: after a close button the tabs keep their widths under the pointer
    // until it leaves the bar; the delay timer then ends the mode and re-fits them.
    bool closing = false;
    bool closedLast = false; // the tab closed in closing mode was the rightmost
    // 200 ms, single-shot; a child of the bar named "TabBarDelayTimer", stopped by the
    // bar's destructor so that no tick reaches a half-destroyed bar.
    QTimer *delayTimer = nullptr;
    TabLeaveWatcher *leaveWatcher = nullptr;

    // The context menu.
    KelMenu *menu = nullptr;
    int menuIndex = -1; // the tab whose menu was opened last, as it was then
    // That tab itself: the commands act on it wherever it has moved, and on nothing once
    // it is gone.
    QPointer<BrowserTabButtonBase> menuButton;
    bool menuRunning = false;
    // A right click on another tab while the menu runs: that tab's menu opens next.
    QPointer<BrowserTabButtonBase> pendingMenuButton;
    QPoint pendingMenuPos;
    quint64 menuPressSerial = 0; // the right press (BrowserTabButtonBasePrivate) of the menu shown
    // The menu runs inside the press handler of the tab that was right-clicked, and Qt
    // sends that tab a context-menu event after the handler returns; the menu itself
    // still runs code after a command's signal. So what a command removes must outlive
    // the menu: removed tabs wait in parkedButtons, and if the bar itself is destroyed,
    // its widgets and its menu wait in menuGrave, which the menu's caller deletes once
    // the menu has returned.
    QList<QPointer<BrowserTabButtonBase>> parkedButtons;
    std::shared_ptr<QList<QPointer<QWidget>>> menuGrave;

    // Dragging.
    QPointer<BrowserTabButtonBase> pressedButton; // guarded: a host may delete it behind our back
    bool dragging = false;   // the pressed button has moved since the press
    bool endingDrag = false; // TabButtonMoved() runs, inside the popup's hide
    int dragStartIndex = -1; // where the pressed tab was at the press, for Escape
    // The scrolling strip tells TabButtonMoved() once, when the drag ends; the classic
    // one after every movement.
    bool movesReportedOnRelease = true;
    // The bar's width when its frames were last placed. Right to left a frame's place
    // counts from the right edge: when the bar's width changes the frames move with
    // that edge, even where no layout follows (a bar without tabs).
    int framesWidth = -1;
    QPoint pressOffset;      // x: button x minus LogicalX() of the pointer at the press; y: button y
    std::unique_ptr<TabMoveProxy> moveProxy; // a parentless popup, owned here

    // Keyboard. The tab the arrow keys have reached: the same tab wherever it moves;
    // when it is removed, its neighbour takes the focus.
    QPointer<BrowserTabButtonBase> focusButton;
    // Drawn on focusButton while the bar has the focus; a child of that button, so it
    // goes with it (and is made again after a removal).
    QPointer<TabFocusRing> focusRing;
    // The ring shows only once the keyboard is in use in the bar (Tab into it, or one
    // of its keys): a window that hands the bar its focus on activation shows none.
    bool focusVisible = false;

    // --- shared behaviour ---------------------------------------------------------

    int Count() const { return buttons.size(); }
    bool IsValidIndex(int index) const { return index >= 0 && index < buttons.size(); }
    BrowserTabButtonBase *ButtonAt(int index) const { return IsValidIndex(index) ? buttons.at(index) : nullptr; }
    /** FixedTabCount(), never below 0. */
    int FixedCount() const;
    int Scaled(int designPixels) const;
    /**
     * The x of a global point in the direction the strip runs: right to left the
     * pointer moving right moves towards the start. Only differences of it mean
     * anything, which is all a drag needs.
     */
    int LogicalX(const QPoint &globalPos) const;
    /**
     * Right to left, moves the frames with the bar's right edge when the bar's width
     * has changed since they were placed (framesWidth). Called on every resize and
     * before every layout: a hidden bar hears of its resizes only when shown.
     */
    void KeepFramesAtTheEnd();

    /** Wires a new button's signals to the bar's slots and takes it into the list. */
    int InsertButton(int index, BrowserTabButtonBase *button);
    /**
     * Whether @p object is a tab button in its bar's list: false for the button of a
     * removed tab that waits for its deletion, and for anything that is not a button.
     */
    static bool IsListedButton(const QObject *object);
    /** Gives the move proxy to the bar and wires it. */
    void SetMoveProxy(TabMoveProxy *proxy);
    /** Index of the tab whose menu was opened, -1 once it is gone; updates menuIndex. */
    int MenuTabIndex();
    /** Shows the menu for @p button at @p globalPos, and then any menu asked for meanwhile. */
    void RunMenu(BrowserTabButtonBase *button, QPoint globalPos);
    /** Where a menu opened without a click opens: under @p button's start corner. */
    QPoint KeyboardMenuPos(const BrowserTabButtonBase *button) const;
    /**
     * A right press on @p widget at @p globalPos while the menu runs: when it is one of
     * this strip's tabs, that tab's menu is to open next. Returns whether it is.
     */
    bool OpenMenuNext(QWidget *widget, const QPoint &globalPos);
    /** The pointer may have left the bar: starts the end of closing mode when it has. */
    void PointerMayHaveLeft();
    /** Ends closing mode now: every tab takes its normal width again. */
    void EndClosingMode();
    /** Ends a drag whose tab is being removed. */
    void AbandonDrag();
    /** Escape during a drag: the tab goes back to where it was. */
    void CancelDrag();
    /** Moves the list entry @p from to @p to; the current tab stays the same tab. */
    void MoveEntry(int from, int to);

    // Texts that follow the application's language: the bar sets them again from their
    // source texts at each LanguageChange, as Qt's own widgets do.
    struct TranslatedText
    {
        QPointer<QObject> object; // a QAction (its text) or a QWidget (its tool tip)
        const char *context;
        const char *source;
    };
    std::vector<TranslatedText> translatedTexts;
    /** A menu entry of the bar whose text is @p source translated in @p context. */
    QAction *NewTranslatedAction(const char *context, const char *source);
    /** Gives @p widget the tool tip @p source translated in @p context. */
    void SetTranslatedToolTip(QWidget *widget, const char *context, const char *source);
    /** Translates every text of translatedTexts again. */
    void Retranslate();
    /**
     * Brings hover and Qt's record of what is under the pointer up to date; while a
     * button is held or a popup open, tries again every 25 ms, @p attempts times.
     */
    void ResyncPointer(int attempts = 40);

    /** The tab with the keyboard focus: focusButton's index, else the current tab's, else -1. */
    int FocusIndex() const;
    /**
     * Moves the keyboard focus to the tab at @p index (clamped to the tabs), shows it,
     * and tells assistive technology when the bar has the focus.
     */
    void SetFocusIndex(int index);
    /** Shows or hides the focus ring to match the bar's focus. */
    void UpdateFocusRing();
    /** Handles a key while the bar has the focus; returns whether it was one of ours. */
    bool HandleKey(QKeyEvent *event);
    /** Whether HandleKey() takes @p event (so that no shortcut takes it first). */
    bool IsTabKey(const QKeyEvent *event) const;
    /** Sends @p type about the tab button @p button to assistive technology. */
    static void NotifyTab(BrowserTabButtonBase *button, int type);
    /** The bar's double-click policy (BrowserTabBarBase::IsDoubleCloseTab()), for its buttons. */
    bool ClosesOnDoubleClick() const;
    /** The button of a new tab, made by the strip (CreateButton()) as the bar's own. */
    BrowserTabButtonBase *MakeButton(const TabDataPtr &tab, const QString &iconPath, bool loading);

    // --- what each strip supplies ---------------------------------------------------

    /**
     * Makes the button of a new tab, parented where the strip keeps it. Called only
     * through MakeButton(), so that the button knows it is the bar's own.
     */
    virtual BrowserTabButtonBase *CreateButton(const TabDataPtr &tab, const QString &iconPath, bool loading) = 0;
    /** A full relayout: widths, places, frames (ResizeButtons). */
    virtual void Relayout() = 0;
    /** The bar's size changed: by default a full relayout. */
    virtual void Resized() { Relayout(); }
    /** After a tab was taken out of the list: lays the rest out, in or out of closing mode. */
    virtual void LayoutAfterRemoval() = 0;
    /** After the current tab changed from @p previous: stacking and layout. */
    virtual void CurrentTabChanged(int previous) = 0;
    /** After a tab was moved by moveTab() or a cancelled drag. */
    virtual void LayoutAfterMove() = 0;
    /**
     * The list changed between @p from and @p to (a tab inserted or removed at from,
     * to being the last index; or moved between the two): the tabs there may stand
     * elsewhere now, those after @p to where they stood. Default: nothing.
     */
    virtual void ListChanged(int from, int to)
    {
        Q_UNUSED(from)
        Q_UNUSED(to)
    }
    /**
     * The next layout lays out every tab anew, whatever the strip knows of their
     * widths and places (something may have changed them behind its back). Default:
     * nothing, for a strip that always does.
     */
    virtual void ForgetLayout() {}
    /** Puts a new tab's button in the stacking order of its siblings: by default at the bottom. */
    virtual void StackNewButton(BrowserTabButtonBase *button);
    /** The neighbour that becomes current when the current tab at @p index is removed. */
    virtual int NextCurrentOnRemoval(int index) = 0;
    /** The icon address of a plug-in tab, from the strip's policy. */
    virtual QString PluginIconUrl(const QString &pluginCode) = 0;
    /** Creates the strip's own menu entries and adds them to @p menu (the recovery entry is added after). */
    virtual void BuildMenu(KelMenu *menu) = 0;
    /** Shows and enables the entries for the tab at menuIndex. */
    virtual void PrepareMenu(const TabDataPtr &tab) = 0;
    /** Re-applies the scaled sizes after a DPI change. */
    virtual void AdjustForDpi() = 0;
    /** The layout direction changed; every widget is already in its mirrored place. */
    virtual void DirectionChanged();
    /**
     * A press on @p button may begin a drag. Returns false when this tab does not move;
     * otherwise the strip marks what it needs and the proxy is shown.
     */
    virtual bool BeginPress(BrowserTabButtonBase *button, const QPoint &globalPos) = 0;
    /** The pointer moved to @p globalPos during a press. */
    virtual void DragTo(const QPoint &globalPos) = 0;
    /** The press has ended (the proxy hid itself); the tab goes into its slot. */
    virtual void EndPress(BrowserTabButtonBase *button) = 0;
    /** The pressed tab is being removed while it is held. */
    virtual void DragAbandoned() = 0;
    /** Brings the tab at @p index into view (the keyboard moved to it). Default: nothing. */
    virtual void ShowTab(int index) { Q_UNUSED(index) }
    /**
     * The strip's own buttons that assistive technology lists after the tabs (scroll
     * arrows, new tab). Default: none.
     */
    virtual QList<QWidget *> AccessibleControls() const { return {}; }
    /**
     * How many pixels at a tab's right end lie under its neighbour, so that the strip
     * may cut them off the last tab without hiding anything. Default: none.
     */
    virtual int TabOverlap() const { return 0; }
};
