// SPDX-License-Identifier: MIT
#pragma once

#include "closedtabstack.h"
#include <KelTabContainer/browsertabbarbase.h>

#include <QPointer>

#include <KelTabContainer/idpiadapter.h>
#include <KelTabContainer/igesturehandlerdelegate.h>
#include <KelTabContainer/ikeyhandlerdelegate.h>
#include <KelTabContainer/itabmanager.h>

#include <QMainWindow>
#include <QStringList>

#include <memory>
#include <vector>

class BrowserGestureHandler;
class BrowserKeyHandler;
class MouseStrokeRecognizer;
class NavigationBar;
class QNetworkAccessManager;
class QStackedWidget;
class QVBoxLayout;
class SignalLog;

/**
 * The demo browser's main window: a host of the library.
 *
 * It owns a tab bar (either kind, held as a BrowserTabBarBase), the pages behind the tabs, the
 * closed-tab stack and the input machinery: a stroke recogniser over the page area
 * feeding a BrowserGestureHandler, and a BrowserKeyHandler for the shortcut table.
 * The window is the delegate of both, the tab manager of the bar and a DPI adapter.
 *
 * It answers every command of the bar (the bar itself never opens, closes or selects
 * a tab) and follows the pages' announcements on BrowserMainNotify to update the
 * tabs and the navigation bar.
 */
class BrowserWindow : public QMainWindow,
                      public ITabManager,
                      public IGestureHandlerDelegate,
                      public IKeyHandlerDelegate,
                      public IDpiAdapter
{
    Q_OBJECT
public:
    /** Which of the library's bars the window shows. */
    enum class BarKind { Scrolling, Classic };

    /**
     * @param kind      the tab bar to start with
     * @param signalLog when given, every bar the window makes has its signals written
     *                  down there (not owned)
     */
    explicit BrowserWindow(BarKind kind, SignalLog *signalLog = nullptr, QWidget *parent = nullptr);
    ~BrowserWindow() override;

    /** Replaces the tab bar by one of @p kind; every tab moves over, the current one stays current. */
    void SetBarKind(BarKind kind);
    BarKind GetBarKind() const;
    BrowserTabBarBase *Bar() const;
    /** The row that holds the bar and, beside the scrolling bar, the window's new-tab button. */
    QWidget *BarRow() const;
    /** The area under the navigation bar that shows the current tab's page. */
    QWidget *PageArea() const;

    /** Opens @p url in a new tab; @return its index. */
    int OpenUrl(const QString &url, bool activate);
    /** Opens a new tab showing the new-tab page, and makes it current. */
    void NewTab();
    /** Closes the tab at @p index as the user would: remembered for recovery. The home tab stays. */
    bool CloseTabAt(int index);
    /** Reopens the tab closed last; @return false when none is remembered. */
    bool RecoverClosedTab();
    QStringList Favourites() const;
    int ClosedTabCount() const;

    // ITabManager
    TabContainer *GetTabContainer(TabDataPtr tab) override;
    int OpenTab(TabDataPtr tab, bool activate) override;
    bool CloseTab(TabDataPtr tab) override;
    TabContainer *GetCurrentTabContainer() override;

    // IGestureHandlerDelegate and IKeyHandlerDelegate (the operations both name are one)
    void ActionBack() override;
    void ActionForward() override;
    void ActionRefresh() override;
    void ActionNewTab() override;
    void ActionCloseTab() override;
    void ActionCloseAllTabs() override;
    void ActionPreviousTab() override;
    void ActionNextTab() override;
    QRect GetToastArea() override;
    void ActionRecoverClosedTab() override;
    void ActionRefreshNoCache() override;
    void ActionSelectTab(int index) override;
    void ActionCtrl9() override;
    void ZoomDefault() override;
    void ZoomIn() override;
    void ZoomOut() override;
    void ActionCtrlD() override;
    void ActionCtrlJ() override;
    void ShowFindDlg() override;
    void ShowDevTools() override;
    void ActionCtrlH() override;
    void ActionCtrlShiftDelete() override;
    bool IsFullscreen() override;
    void EnterFullscreen() override;
    void ExitFullscreen() override;
    void ActionAltShiftUp() override;
    void ActionAltShiftDown() override;
    void ActionAltC() override;
    void ActionAltE() override;

    // IDpiAdapter
    void AdjustForDpi() override;

Q_SIGNALS:
    /** A new bar took over (SetBarKind()). */
    void SigBarReplaced(BrowserTabBarBase *bar);
    /** The window told the user something in its status bar. */
    void SigStatusMessage(const QString &text);

private:
    void InitUi();
    void InitInput();
    void InitNotifications();
    void MakeBar(BarKind kind);
    void ConnectBar();
    /** Brings the tab into view where the bar scrolls; nothing on the classic bar. */
    void ShowIndex(int index);
    void ApplyWindowStyle();
    void ShowMessage(const QString &text);

    std::unique_ptr<TabContainer> CreatePage(TabDataPtr tab);
    TabContainer *PageFor(TabDataPtr tab) const;
    TabContainer *PageAt(int index) const;
    void DestroyPage(TabContainer *page);
    QString UrlAt(int index) const;
    bool IsCurrentTab(TabDataPtr tab) const;

    // Answers to the bar.
    void OnCurrentChanged(int index);
    void OnCloseRequested(int index);
    void OnRefresh(int index);
    void OnAddFav(int index);
    void OnCopyLink(int index);
    void OnOpenInBrowser(int index);
    void OnCloseOthers(int index);
    void OnCloseLeft(int index);
    void OnCloseRight(int index);
    void OnAddressEntered(const QString &text);
    void OnFind(const QString &text);

    ClosedTabStack m_closedTabs;
    // The home tab: fixed, first, never closed or dragged.
    static constexpr int kHomeTabs = 1;
    BarKind m_kind = BarKind::Scrolling;
    QPointer<QWidget> m_barRow;
    BrowserTabBarBase *m_bar = nullptr;
    std::vector<std::unique_ptr<TabContainer>> m_pages;
    TabContainer *m_current = nullptr;
    QVBoxLayout *m_layout = nullptr;
    NavigationBar *m_nav = nullptr;
    QStackedWidget *m_pageArea = nullptr;
    QNetworkAccessManager *m_network = nullptr;
    BrowserGestureHandler *m_gestures = nullptr;
    MouseStrokeRecognizer *m_strokes = nullptr;
    std::unique_ptr<BrowserKeyHandler> m_keys;
    QStringList m_favourites;
    SignalLog *m_signalLog;
};
