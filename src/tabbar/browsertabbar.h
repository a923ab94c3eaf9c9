#pragma once

#include "closeactivetype.h"
#include "idpiadapter.h"
#include "keltabcontainer_export.h"
#include "tabdata.h"

#include <QFrame>
#include <QStringList>

#include <memory>

class BrowserTabBarPrivate;
class BrowserTabButton;
class ITabManager;
class QPixmap;

/**
 * The classic tab strip: overlapping painted tabs (BrowserTabButton) from left to
 * right, followed by a new-tab button, without scrolling.
 *
 * The bar mirrors Qt's tab bar (addTab, insertTab, removeTab, setCurrentIndex,
 * currentChanged, tabCloseRequested), but identifies tabs by TabDataPtr records and
 * never closes, opens or activates a page by itself: user intent leaves it as signals
 * and the host answers by calling the bar.
 *
 * Layout: every movable tab gets the same width, from MaxButtonWidth() down to
 * MinButtonWidth() as tabs are added; neighbours overlap by ButtonSpacing() pixels.
 * The first tabs that the host's FixedTabCount() names share FixedTabTotalWidth().
 * The new-tab button ("TabBarNewTabButton") follows the last tab, or stands at the
 * bar's right end once the tabs are squeezed. When a tab is closed with its close
 * button, the other tabs keep their widths while the pointer stays on the bar, so
 * that the next close button comes to lie under the pointer; 200 ms after the
 * pointer leaves the bar, the tabs fit the bar again.
 *
 * A tab dragged sideways follows the pointer and takes a neighbour's place once it
 * covers enough of it; tabs before SetFirstIndex() stay in place. The context menu
 * ("BrowserTabBarMenu") exists once the host has called InitMenu().
 *
 * All sizes are design pixels at 96 dpi, scaled for the screen (DpiTool).
 */
class KELTABCONTAINER_EXPORT BrowserTabBar : public QFrame, public IDpiAdapter
{
    Q_OBJECT
public:
    explicit BrowserTabBar(QWidget *parent = nullptr);
    ~BrowserTabBar() override;

    /**
     * Builds the context menu. Call once after construction; the constructor does
     * not, so that a subclass's IsShowRecoveryItem() is asked. Later calls do nothing.
     */
    void InitMenu();

    /**
     * Appends a tab.
     * @param data     the tab's record; a null record adds nothing
     * @param iconPath local file of the tab's icon, or empty
     * @param loading  show the loading animation from the start
     * @return the new tab's index, or -1 for a null record
     */
    int addTab(TabDataPtr data, const QString &iconPath = QString(), bool loading = false);
    /**
     * Inserts a tab at @p index (clamped to 0 .. count()). The current tab stays the
     * same tab: inserting at or before it moves currentIndex() up by one.
     * @return the index the tab was inserted at, or -1 for a null record
     */
    int insertTab(int index, TabDataPtr data, const QString &iconPath = QString(), bool loading = false);
    /**
     * Removes the tab at @p index; out-of-range indexes are ignored. When it is the
     * current tab, the neighbour that GetCloseType() names becomes current first
     * (currentChanged reports that neighbour's index before the removal).
     */
    void removeTab(int index);
    int count() const;
    int currentIndex() const;

    TabDataPtr GetTabData(int index) const;
    TabDataPtr GetCurrentTabData() const;
    /** @return the first tab whose record equals @p data (same id, or same type and data), or -1. */
    int GetIndexByTabData(TabDataPtr data) const;
    /** @return the first tab titled exactly @p name (case-sensitive), or -1. */
    int GetIndexByName(const QString &name) const;
    /** @return the first tab whose id is exactly @p id, or -1. */
    int GetIndexByTabId(const QString &id) const;
    QStringList GetAllTabTitles() const;
    /** The icon URL last asked for on the current tab; empty without a current tab. */
    QString CurrentIconUrl() const;
    /** The local icon file of the current tab; empty without a current tab or icon. */
    QString CurrentIconLocalPath() const;

    /** Sets a tab's title. @note Empty titles and out-of-range indexes are ignored. */
    void setTabText(int index, const QString &text);
    /** Asks for a tab's icon by URL. @note Empty URLs and out-of-range indexes are ignored. */
    void setTabIcon(int index, const QString &icon);
    /** Turns a tab's loading animation on; out-of-range indexes are ignored. */
    void LoadStart(int index);
    /** Turns a tab's loading animation off; out-of-range indexes are ignored. */
    void LoadFinished(int index);

    /** The lowest index a dragged tab may take; tabs before it cannot be dragged. */
    void SetFirstIndex(int index);
    int GetFirstIndex() const;
    /** Hides the new-tab button for good: it stays hidden after drags too. */
    void HideNewTabButton();
    /** Stores the host's tab manager; the bar never calls it and does not own it. */
    void SetTabManager(ITabManager *manager);
    ITabManager *GetTabManager() const;

    /**
     * The painted background for a tab button, from the bar's shared cache.
     * @return a pixmap owned by the bar, valid until a button of another width asks;
     * null for a width of 0 or less.
     */
    QPixmap *GetButtonBg(int width, bool checked, bool hovered);

    /** Scaled size constants of the layout. */
    int ButtonHeight() const;
    int ButtonHomepageWidth() const;
    int ButtonMarginRight() const;
    int ButtonMarginTop() const;
    int ButtonPadding() const;
    /** The overlap of neighbouring tabs. */
    int ButtonSpacing() const;
    int MinButtonWidth() const;
    int MaxButtonWidth() const;
    /** Unchecked tabs at or below this width show their close button only while hovered. */
    int NoCloseButtonWidth() const;
    /** The width of every movable tab (0 before the first layout). */
    int ButtonWidth() const;

    /** Re-applies every scaled size after the DPI factor changed. */
    void AdjustForDpi() override;

public Q_SLOTS:
    /**
     * Makes the tab at @p index current and emits currentChanged. A negative index
     * leaves no tab current.
     * @note Nothing is emitted for @p index >= count() or for the index already current.
     */
    void setCurrentIndex(int index);

Q_SIGNALS:
    void currentChanged(int index);
    /** The user asked to close a tab (close button, double click, menu). The bar removes nothing itself. */
    void tabCloseRequested(int index);
    /** The new-tab button was clicked. The bar adds nothing itself. */
    void SigAddNewTab();
    void SigCloseOtherTab(int index);
    void SigCloseLeftTab(int index);
    void SigCloseRightTab(int index);
    void SigRecoverRecentlyTab();

protected:
    /** Whether a double click on a tab asks to close it. Default: true. */
    virtual bool IsDoubleCloseTab() const;
    /** Which tab becomes current when the current one is removed. Default: CloseActiveNext. */
    virtual CloseActiveType GetCloseType();
    /** Menu policy: whether "Close tab" is enabled for the tab at @p index. Default: true. */
    virtual bool CheckCloseCurItem(int index);
    /** Default: enabled unless the menu's tab is the last one. */
    virtual bool CheckCloseRightItem(int index);
    /** Default: enabled with at least two tabs. */
    virtual bool CheckCloseOtherItem(int index);
    /** Default: enabled unless the menu's tab is the first one. */
    virtual bool CheckCloseLeftItem(int index);
    /** Whether "Recover recently closed tabs" is enabled. Default: false. */
    virtual bool CheckRecoveryItem();
    /** Whether the menu has the recovery item; asked by InitMenu(). Default: false. */
    virtual bool IsShowRecoveryItem();
    /** Called after every handled movement of a dragged tab. Default: nothing. */
    virtual void TabButtonMoved();
    /** Total width of the fixed tabs at the start of the strip. Default: 0. */
    virtual int FixedTabTotalWidth();
    /** Number of fixed tabs at the start of the strip. Default: 0. */
    virtual int FixedTabCount();
    /** The icon URL of a plug-in tab, by the tab's title. Default: empty. */
    virtual QString GetPluginIconUrl(const QString &pluginCode);

    /** Computes ButtonWidth() and the one-pixel remainder for @p available pixels. */
    void ComputeButtonWidth(int available);
    /** Fits the tabs to the bar again and ends the frozen widths after closing by mouse. */
    void ResizeButtons();
    /** Fits the tabs to the present strip width, keeping the closing-by-mouse state. */
    void ResizeLastButtons();
    /** Places the tabs at their widths (a dragged tab keeps its place) and the new-tab button. */
    void ResetButtons();
    /** Sizes the strip that holds the tabs and places the new-tab button. */
    void SetContentWidth();

    /** Diagnostics: background pixmaps built so far by the bar's cache (see BrowserTabButtonBg::BuildCount). */
    int ButtonBgBuildCount() const;

    void leaveEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private Q_SLOTS:
    void SlotCloseCurTab();
    void SlotCloseOtherTab();
    void SlotCloseLeftTab();
    void SlotCloseRightTab();
    void SlotRecoverRecentlyTab();
    void SlotChangeClicked(TabDataPtr data);
    void SlotCloseClicked(TabDataPtr data);
    void SlotMenuClicked(TabDataPtr data);
    void SlotButtonPressed();
    void SlotButtonMove();
    void SlotButtonRelease();

private:
    // The buttons ask the bar's policy (double click, plug-in icons) and layout.
    friend class BrowserTabButton;

    void InitContent();
    void InitMoveProxy();
    BrowserTabButton *CreateTabButton(TabDataPtr data, const QString &iconPath, bool loading);
    void SizeButtons();
    void SortButtons();
    void CheckMenuEnable();
    void EndDragOfRemovedTab();
    int FixedCount();

    std::unique_ptr<BrowserTabBarPrivate> const d;
};
