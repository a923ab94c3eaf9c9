// SPDX-License-Identifier: MIT
#pragma once

// The private class of BrowserTabBarEx: the scrolling strip's layout, arrows, animated
// scroll and drag. Not part of the installed API.

#include "browsertabbarbase_p.h"
#include "browsertabbarex.h"

#include <QPointer>
#include <QVector>

#include <climits>


class BrowserTabArrowEx;
class BrowserTabButtonEx;
class QAction;
class QFrame;
class QTimer;

class BrowserTabBarExPrivate : public BrowserTabBarBasePrivate
{
    Q_DECLARE_PUBLIC(BrowserTabBarEx)
public:
    BrowserTabBarExPrivate();
    ~BrowserTabBarExPrivate() override;

    /** The private state of @p bar (not null). */
    static BrowserTabBarExPrivate *get(BrowserTabBarEx *bar) { return bar->d_func(); }

    void Init();

    bool overflow = false;        // the scrolling tabs do not fit; arrows shown
    bool keepCurrentWide = false; // the current tab keeps the maximum width; nothing sets it
    int currentButtonWidth = 0;
    int scrollOffset = 0;         // content strip's x in the viewport, minOffset..0
    int animationStart = 0;
    int animationTarget = 0;
    int animationStep = 0;
    bool slideAfterClose = false; // the running scroll is ResizeLastButtons' slide
    // 20 ms, repeating: the animated scroll. A child of the bar named
    // "TabBarArrowTimerEx", stopped by the bar's destructor.
    QTimer *arrowTimer = nullptr;

    QAction *upperSeparator = nullptr;
    QAction *refreshAction = nullptr;
    QAction *addFavAction = nullptr;
    QAction *copyLinkAction = nullptr;
    QAction *openInBrowserAction = nullptr;
    QAction *closeCurAction = nullptr;
    QAction *closeOtherAction = nullptr;
    QAction *closeRightAction = nullptr;
    QAction *closeLeftAction = nullptr;

    QFrame *leftArrowFrame = nullptr;
    QFrame *rightArrowFrame = nullptr;
    BrowserTabArrowEx *leftArrow = nullptr;
    BrowserTabArrowEx *rightArrow = nullptr;
    QFrame *leftShadow = nullptr;
    QFrame *rightShadow = nullptr;
    QFrame *fixedArea = nullptr;
    QFrame *viewport = nullptr;
    QFrame *contentStrip = nullptr;

    // With thousands of tabs a change must cost what it changes, not what the strip
    // holds. What the last layout gave the scrolling tabs, and from which list index
    // on their widths or places may have changed since (ListChanged(), or any layout
    // that is not ResizeButtons()'s): the next ResizeButtons() starts there.
    struct Placed
    {
        int buttonWidth = -1;
        int currentWidth = -1;
        int height = -1;
        int top = -1;
        int current = -1;
    };
    Placed placed;
    int placeFrom = 0;
    int placeTo = -1; // after it, the tabs stand as the last layout left them
    // Tabs made since the last layout: with the widths unchanged, the only ones to size.
    QVector<QPointer<BrowserTabButtonBase>> unsized;
    // The scrolling tabs that hold their inner widgets (and are shown): the only ones a
    // scroll may have to let go of. Fixed tabs always hold theirs.
    QVector<QPointer<BrowserTabButtonBase>> awake;
    // The tabs whose separator the bar was last told to hide; every other tab's is to show.
    QVector<QPointer<BrowserTabButtonEx>> separatorsHidden;

    BrowserTabButtonEx *Button(int index) const;
    void InitContent();
    void InitArrowFrame();
    BrowserTabButtonBase *CreateButton(const TabDataPtr &tab, const QString &iconPath, bool loading) override;
    QString PluginIconUrl(const QString &pluginCode) override;
    /** The bar's checked icon for @p tab (BrowserTabBarEx::GetCheckedIcon()), for its buttons. */
    QString CheckedIcon(const TabDataPtr &tab);
    void StackNewButton(BrowserTabButtonBase *button) override;
    QList<QWidget *> AccessibleControls() const override;

    // Layout.
    void Relayout() override;
    void Resized() override;
    void AdjustForDpi() override;
    void LayoutAfterRemoval() override;
    void LayoutAfterMove() override;
    void ListChanged(int from, int to) override;
    void ForgetLayout() override;
    void ComputeButtonWidth(int available);
    void ResizeButtons();
    /** Sizes and places the fixed tabs, which share @p fixedTotal evenly. */
    void LayOutFixedButtons(int fixedTotal);
    /** The scrolling tabs a layout has to look at, from what changed since the last one. */
    struct Range
    {
        int from = 0;             // the first tab to size or place; those before it stand as they should
        int until = INT_MAX;      // after it, the first tab found in its place has every later one in its place
        bool incremental = false; // the widths are the last layout's: only new and current tabs need sizing
    };
    Range RangeToLayOut() const;
    /** Sizes the scrolling tabs @p range needs sized; returns the width of the tabs from range.from on. */
    int SizeScrollingButtons(const Range &range);
    /** Places the scrolling tabs from range.from on, the first at @p x; a held tab keeps its place. */
    void PlaceScrollingButtonsFrom(const Range &range, int x);
    void ResetButtons();
    void PlaceScrollingButtons();
    /**
     * Whether the list runs as the layout expects: the fixed tabs first, in the fixed
     * area, then the scrolling tabs in the content strip, none floating in a drag.
     */
    bool IsOrdered() const;
    void SetContentWidth();
    /**
     * The viewport's width beside fixed tabs @p fixedTotal wide: with the arrows while
     * the tabs overflow, without them otherwise.
     */
    int ViewportWidth(int fixedTotal) const;
    void ResetSeparator();
    void SetPressedSeparator();
    /** Shows or hides @p button's separator (which remembers a hidden one, see SeparatorHidden()). */
    void SetSeparator(BrowserTabButtonEx *button, bool visible);
    /** Remembers @p button, told to hide its separator, for the next ResetSeparator() to look at. */
    void SeparatorHidden(BrowserTabButtonEx *button);
    void UpdateButtonForms();
    /** Gives @p button its inner widgets, or lets go of them, for a place between @p left and @p right. */
    void UpdateButtonForm(BrowserTabButtonBase *button, int left, int right);
    void DirectionChanged() override;
    /** The arrows and shadows point and fade the other way round when mirrored. */
    void UpdateMirroredStyles();

    // The current tab.
    void CurrentTabChanged(int previous) override;
    int NextCurrentOnRemoval(int index) override;
    void ShowTab(int index) override;
    /** Whether the scrolling tab at @p index lies wholly inside the viewport. */
    bool IsInView(int index) const;
    /** Scrolls at once, without animation, just far enough to show the tab at @p index whole. */
    void BringIntoView(int index);

    // Closing mode: layouts that keep the widths frozen under the mouse.
    void ResetDelayButtons();
    void ResizeLastButtons();
    void ResizeDelayArea();
    void ResizeDelayButtons();

    // Scrolling.
    int MinOffset() const;
    int ScrollStep() const;
    void CheckAreaOffset();
    void StartArrowTimer();
    bool CanScrollTowardsStart() const;
    bool CanScrollTowardsEnd() const;
    /** Which end of the strip an arrow scrolls towards. */
    enum class Towards { Start, End };
    /** What the user did to an arrow. */
    enum class ArrowUse { Click, DoubleClick, Press };
    /**
     * Animates the strip towards @p end as @p use asks: a click scrolls one step (and
     * is ignored while a step is still animating), a double click or a held press runs
     * to the end, the double click faster.
     */
    void ScrollByArrow(Towards end, ArrowUse use);
    void UpdateArrowState();

    // Dragging.
    bool BeginPress(BrowserTabButtonBase *button, const QPoint &globalPos) override;
    void DragTo(const QPoint &globalPos) override;
    void EndPress(BrowserTabButtonBase *button) override;
    void DragAbandoned() override;
    void SortButtons();
    void ResetSortButtons();

    // The menu.
    void BuildMenu(KelMenu *menu) override;
    void PrepareMenu(const TabDataPtr &tab) override;
    void CheckMenuVisible(const TabDataPtr &tab);
    void CheckMenuEnable();
};
