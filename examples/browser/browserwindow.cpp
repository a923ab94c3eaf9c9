// SPDX-License-Identifier: MIT
#include "browserwindow.h"

#include "homepage.h"
#include "hometabbar.h"
#include "hometabbarex.h"
#include "navigationbar.h"
#include "pluginpage.h"
#include "signallog.h"
#include "tabrecordfactory.h"
#include "textbrowserpage.h"

#include <KelTabContainer/browsergesturehandler.h>
#include <KelTabContainer/browserkeyhandler.h>
#include <KelTabContainer/browsermainnotify.h>
#include <KelTabContainer/dpitool.h>
#include <KelTabContainer/mousestrokerecognizer.h>

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QFile>
#include <QHBoxLayout>
#include <QNetworkAccessManager>
#include <QRegularExpression>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kMessageMs = 5000;

} // namespace

BrowserWindow::BrowserWindow(BarKind kind, SignalLog *signalLog, QWidget *parent)
    : QMainWindow(parent)
    , m_network(new QNetworkAccessManager(this))
    , m_signalLog(signalLog)
{
    setObjectName(QStringLiteral("BrowserWindow"));
    setWindowTitle(tr("KelTab Browser"));
    setWindowIcon(QIcon(QStringLiteral(":/browser/icons/app.png")));
    InitUi();
    InitInput();
    InitNotifications();

    MakeBar(kind);
    ConnectBar();

    // The home tab must come first: the bar puts the first FixedTabCount() tabs it
    // is given into its fixed area.
    OpenTab(TabRecordFactory::MakeHome(), false);
    OpenUrl(QStringLiteral("qrc:/browser/pages/welcome.html"), true);
    ApplyWindowStyle();
}

BrowserWindow::~BrowserWindow()
{
    // The bar goes first, so that no page is asked for anything while it goes away.
    delete m_barRow.data();
    m_bar = nullptr;
    m_current = nullptr;
    m_pages.clear();
}

void BrowserWindow::InitUi()
{
    auto *central = new QWidget(this);
    m_layout = new QVBoxLayout(central);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);

    m_nav = new NavigationBar(central);
    m_layout->addWidget(m_nav);
    m_pageArea = new QStackedWidget(central);
    m_pageArea->setObjectName(QStringLiteral("PageArea"));
    m_layout->addWidget(m_pageArea, 1);
    setCentralWidget(central);
    statusBar()->setSizeGripEnabled(false);

    connect(m_nav, &NavigationBar::SigBack, this, &BrowserWindow::ActionBack);
    connect(m_nav, &NavigationBar::SigForward, this, &BrowserWindow::ActionForward);
    connect(m_nav, &NavigationBar::SigReload, this, &BrowserWindow::ActionRefresh);
    connect(m_nav, &NavigationBar::SigHome, this, [this] { ActionSelectTab(0); });
    connect(m_nav, &NavigationBar::SigFavourite, this, &BrowserWindow::ActionCtrlD);
    connect(m_nav, &NavigationBar::SigAddressEntered, this, &BrowserWindow::OnAddressEntered);
    connect(m_nav, &NavigationBar::SigFind, this, &BrowserWindow::OnFind);
}

void BrowserWindow::InitInput()
{
    // Gestures: strokes drawn over the pages go to the handler, which shows its
    // toast and calls back the window for the action.
    m_gestures = new BrowserGestureHandler(this);
    m_gestures->SetGestureHandlerDelegate(this);
    m_strokes = new MouseStrokeRecognizer(this);
    m_strokes->SetGestureHandler(m_gestures);
    m_strokes->Attach(m_pageArea);

    // Shortcuts: the whole table, for any widget of this window.
    m_keys = std::make_unique<BrowserKeyHandler>();
    m_keys->Initialize(this, Qt::WindowShortcut);
    m_keys->SetKeyHandlerDelegate(this);
}

void BrowserWindow::InitNotifications()
{
    BrowserMainNotify *notify = BrowserMainNotify::Instance();
    connect(notify, &BrowserMainNotify::SigLoadStart, this, [this](TabDataPtr tab) {
        m_bar->LoadStart(m_bar->GetIndexByTabData(tab));
    });
    connect(notify, &BrowserMainNotify::SigLoadFinished, this, [this](TabDataPtr tab) {
        m_bar->LoadFinished(m_bar->GetIndexByTabData(tab));
    });
    connect(notify, &BrowserMainNotify::SigWebTitleChanged, this, [this](TabDataPtr tab, const QString &title) {
        m_bar->setTabText(m_bar->GetIndexByTabData(tab), title);
        if (IsCurrentTab(tab))
            setWindowTitle(tr("%1 - KelTab Browser").arg(title));
    });
    connect(notify, &BrowserMainNotify::SigWebIconChanged, this, [this](TabDataPtr tab, const QString &icon) {
        m_bar->setTabIcon(m_bar->GetIndexByTabData(tab), icon);
    });
    connect(notify, &BrowserMainNotify::SigAddressChanged, this, [this](TabDataPtr tab, const QUrl &url) {
        if (!IsCurrentTab(tab))
            return;
        m_nav->SetAddress(url.toString());
        m_nav->SetFavourite(!url.isEmpty() && m_favourites.contains(url.toString()));
    });
    connect(notify, &BrowserMainNotify::SigWebStatusChanged, this,
            [this](TabDataPtr tab, bool loading, bool canGoBack, bool canGoForward) {
                Q_UNUSED(loading)
                if (IsCurrentTab(tab))
                    m_nav->SetNavigationState(canGoBack, canGoForward, m_current && m_current->GetRefreshEnabled());
            });
    connect(notify, &BrowserMainNotify::SigGetZoomPercent, this,
            [this](TabDataPtr tab, double percent, bool isMax, bool isMin) {
                Q_UNUSED(isMax)
                Q_UNUSED(isMin)
                if (IsCurrentTab(tab) && qRound(percent) != 100)
                    ShowMessage(tr("Zoom %1 %").arg(qRound(percent)));
            });
    connect(notify, &BrowserMainNotify::SigCloseTab, this, [this](TabDataPtr tab) {
        CloseTabAt(m_bar->GetIndexByTabData(tab));
    });
}

void BrowserWindow::MakeBar(BarKind kind)
{
    m_kind = kind;
    m_barRow = new QWidget;
    m_barRow->setObjectName(QStringLiteral("TabStripRow"));
    m_barRow->setAttribute(Qt::WA_StyledBackground);
    auto *row = new QHBoxLayout(m_barRow);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    if (kind == BarKind::Classic)
        m_bar = new HomeTabBar(&m_closedTabs, m_barRow);
    else
        m_bar = new HomeTabBarEx(&m_closedTabs, m_barRow);
    // Watching before the window connects: each signal is logged before those that
    // answering it causes.
    if (m_signalLog)
        m_signalLog->Watch(m_bar, QFrame::staticMetaObject);
    row->addWidget(m_bar, 1);
    // Left to the host: the menu asks the subclass's policy, and dragging must stop at
    // the home tab.
    m_bar->InitMenu();
    m_bar->SetFirstIndex(kHomeTabs);
    if (kind == BarKind::Scrolling) {
        // The scrolling bar leaves the new-tab button to the host; announcing the click
        // through the bar's own SigAddNewTab keeps one path for "+" on both bars.
        auto *newTab = new QToolButton(m_barRow);
        newTab->setObjectName(QStringLiteral("NewTabButton"));
        newTab->setIcon(QIcon(QStringLiteral(":/browser/icons/newtab.png")));
        newTab->setToolTip(tr("New tab (Ctrl+T)"));
        newTab->setAccessibleName(tr("New tab"));
        newTab->setFocusPolicy(Qt::NoFocus);
        newTab->setCursor(Qt::PointingHandCursor);
        row->addWidget(newTab, 0, Qt::AlignVCenter);
        connect(newTab, &QToolButton::clicked, m_bar, [bar = m_bar] { Q_EMIT bar->SigAddNewTab(); });
    }
    m_layout->insertWidget(0, m_barRow);
}

void BrowserWindow::ConnectBar()
{
    m_bar->SetTabManager(this);
    connect(m_bar, &BrowserTabBarBase::currentChanged, this, &BrowserWindow::OnCurrentChanged);
    connect(m_bar, &BrowserTabBarBase::tabCloseRequested, this, &BrowserWindow::OnCloseRequested);
    connect(m_bar, &BrowserTabBarBase::SigAddNewTab, this, &BrowserWindow::NewTab);
    connect(m_bar, &BrowserTabBarBase::SigCloseOtherTab, this, &BrowserWindow::OnCloseOthers);
    connect(m_bar, &BrowserTabBarBase::SigCloseLeftTab, this, &BrowserWindow::OnCloseLeft);
    connect(m_bar, &BrowserTabBarBase::SigCloseRightTab, this, &BrowserWindow::OnCloseRight);
    connect(m_bar, &BrowserTabBarBase::SigRecoverRecentlyTab, this, &BrowserWindow::RecoverClosedTab);
    // The scrolling bar's own commands.
    if (auto *bar = qobject_cast<HomeTabBarEx *>(m_bar)) {
        connect(bar, &HomeTabBarEx::SigRefreshTab, this, &BrowserWindow::OnRefresh);
        connect(bar, &HomeTabBarEx::SigReloadIconClicked, this, &BrowserWindow::OnRefresh);
        connect(bar, &HomeTabBarEx::SigAddFav, this, &BrowserWindow::OnAddFav);
        connect(bar, &HomeTabBarEx::SigCopyLink, this, &BrowserWindow::OnCopyLink);
        connect(bar, &HomeTabBarEx::SigOpenInBrowser, this, &BrowserWindow::OnOpenInBrowser);
    }
}

void BrowserWindow::ShowIndex(int index)
{
    if (auto *bar = qobject_cast<BrowserTabBarEx *>(m_bar))
        bar->showIndex(index);
}

void BrowserWindow::SetBarKind(BarKind kind)
{
    if (m_bar && m_kind == kind)
        return;

    QList<TabDataPtr> tabs;
    for (int i = 0; i < m_bar->count(); ++i)
        tabs.append(m_bar->GetTabData(i));
    const int current = m_bar->currentIndex();

    delete m_barRow.data();
    m_bar = nullptr;
    MakeBar(kind);
    ConnectBar();

    for (const TabDataPtr &tab : tabs) {
        const int index = m_bar->addTab(tab, QString(), false);
        // The buttons wrote the icon address they last asked for into the record.
        if (!tab->GetIconUrl().isEmpty())
            m_bar->setTabIcon(index, tab->GetIconUrl());
        TabContainer *page = PageFor(tab);
        if (page && page->GetIsLoading())
            m_bar->LoadStart(index);
    }
    m_current = nullptr; // the new bar starts without a current tab
    m_bar->setCurrentIndex(current);
    ApplyWindowStyle();
    Q_EMIT SigBarReplaced(m_bar);
}

BrowserWindow::BarKind BrowserWindow::GetBarKind() const
{
    return m_kind;
}

BrowserTabBarBase *BrowserWindow::Bar() const
{
    return m_bar;
}

QWidget *BrowserWindow::BarRow() const
{
    return m_barRow;
}

QWidget *BrowserWindow::PageArea() const
{
    return m_pageArea;
}

int BrowserWindow::OpenUrl(const QString &url, bool activate)
{
    return OpenTab(TabRecordFactory::MakeWeb(url), activate);
}

void BrowserWindow::NewTab()
{
    OpenTab(TabRecordFactory::MakeNewTab(), true);
}

bool BrowserWindow::CloseTabAt(int index)
{
    const TabDataPtr tab = m_bar->GetTabData(index);
    if (!tab || index < kHomeTabs)
        return false;
    TabContainer *page = PageFor(tab);
    if (page && !page->TryToClose(false))
        return false;
    m_closedTabs.Push(*tab);
    // The bar makes a neighbour current first (currentChanged), then drops the tab.
    m_bar->removeTab(index);
    DestroyPage(page);
    return true;
}

bool BrowserWindow::RecoverClosedTab()
{
    if (m_closedTabs.IsEmpty())
        return false;
    OpenTab(TabDataPtr(new TabData(m_closedTabs.Pop())), true);
    return true;
}

QStringList BrowserWindow::Favourites() const
{
    return m_favourites;
}

int BrowserWindow::ClosedTabCount() const
{
    return m_closedTabs.Count();
}

// ---------------------------------------------------------------------------
// ITabManager

TabContainer *BrowserWindow::GetTabContainer(TabDataPtr tab)
{
    return PageFor(tab);
}

int BrowserWindow::OpenTab(TabDataPtr tab, bool activate)
{
    if (!tab)
        return -1;
    // A tab that is already open (the Notes plug-in, a recovered tab) is shown, not doubled.
    int index = m_bar->GetIndexByTabData(tab);
    if (index < 0) {
        std::unique_ptr<TabContainer> page = CreatePage(tab);
        TabContainer *raw = page.get();
        m_pageArea->addWidget(raw->GetWidget());
        m_pages.push_back(std::move(page));
        index = m_bar->addTab(tab, QString(), false);
        // Only now that the bar holds the tab can it hear the page start loading.
        raw->OpenUrl(tab->IsNewTab() ? TabRecordFactory::NewTabPageUrl() : tab->GetUrl());
    }
    if (activate)
        m_bar->setCurrentIndex(index);
    return index;
}

bool BrowserWindow::CloseTab(TabDataPtr tab)
{
    return CloseTabAt(m_bar->GetIndexByTabData(tab));
}

TabContainer *BrowserWindow::GetCurrentTabContainer()
{
    return m_current;
}

// ---------------------------------------------------------------------------
// Gestures and shortcuts

void BrowserWindow::ActionBack()
{
    if (m_current)
        m_current->ActionBack();
}

void BrowserWindow::ActionForward()
{
    if (m_current)
        m_current->ActionForward();
}

void BrowserWindow::ActionRefresh()
{
    if (m_current)
        m_current->ActionRefresh();
}

void BrowserWindow::ActionNewTab()
{
    NewTab();
}

void BrowserWindow::ActionCloseTab()
{
    CloseTabAt(m_bar->currentIndex());
}

void BrowserWindow::ActionCloseAllTabs()
{
    for (int i = m_bar->count() - 1; i >= kHomeTabs; --i)
        CloseTabAt(i);
}

void BrowserWindow::ActionPreviousTab()
{
    const int count = m_bar->count();
    if (count > 1)
        m_bar->setCurrentIndex((m_bar->currentIndex() - 1 + count) % count);
}

void BrowserWindow::ActionNextTab()
{
    const int count = m_bar->count();
    if (count > 1)
        m_bar->setCurrentIndex((m_bar->currentIndex() + 1) % count);
}

QRect BrowserWindow::GetToastArea()
{
    return QRect(m_pageArea->mapToGlobal(QPoint(0, 0)), m_pageArea->size());
}

void BrowserWindow::ActionRecoverClosedTab()
{
    if (!RecoverClosedTab())
        ShowMessage(tr("No recently closed tab to reopen."));
}

void BrowserWindow::ActionRefreshNoCache()
{
    if (m_current)
        m_current->ActionRefreshNoCache();
}

void BrowserWindow::ActionSelectTab(int index)
{
    if (index >= 0 && index < m_bar->count())
        m_bar->setCurrentIndex(index);
}

void BrowserWindow::ActionCtrl9()
{
    m_bar->setCurrentIndex(m_bar->count() - 1);
}

void BrowserWindow::ZoomDefault()
{
    if (m_current)
        m_current->ZoomDefault();
}

void BrowserWindow::ZoomIn()
{
    if (m_current)
        m_current->ZoomIn();
}

void BrowserWindow::ZoomOut()
{
    if (m_current)
        m_current->ZoomOut();
}

void BrowserWindow::ActionCtrlD()
{
    OnAddFav(m_bar->currentIndex());
}

void BrowserWindow::ActionCtrlJ()
{
    ShowMessage(tr("Downloads: this demo downloads nothing but tab icons."));
}

void BrowserWindow::ShowFindDlg()
{
    if (dynamic_cast<TextBrowserPage *>(m_current))
        m_nav->ShowFind();
}

void BrowserWindow::ShowDevTools()
{
    ShowMessage(tr("Developer tools belong to a real browser engine, which this demo does not embed."));
}

void BrowserWindow::ActionCtrlH()
{
    ShowMessage(tr("History: %n tab(s) closed in this session.", nullptr, m_closedTabs.Count()));
}

void BrowserWindow::ActionCtrlShiftDelete()
{
    while (!m_closedTabs.IsEmpty())
        m_closedTabs.Pop();
    ShowMessage(tr("Recently closed tabs forgotten."));
}

bool BrowserWindow::IsFullscreen()
{
    return isFullScreen();
}

void BrowserWindow::EnterFullscreen()
{
    showFullScreen();
}

void BrowserWindow::ExitFullscreen()
{
    showNormal();
}

void BrowserWindow::ActionAltShiftUp()
{
    if (auto *page = dynamic_cast<TextBrowserPage *>(m_current))
        page->ScrollToEdge(true);
}

void BrowserWindow::ActionAltShiftDown()
{
    if (auto *page = dynamic_cast<TextBrowserPage *>(m_current))
        page->ScrollToEdge(false);
}

void BrowserWindow::ActionAltC()
{
    OnCopyLink(m_bar->currentIndex());
}

void BrowserWindow::ActionAltE()
{
    OnOpenInBrowser(m_bar->currentIndex());
}

void BrowserWindow::AdjustForDpi()
{
    ApplyWindowStyle();
    m_nav->AdjustForDpi();
    // The bar re-lays its tabs in its own AdjustForDpi(), whose turn may come after
    // ours; bring the current tab back into view once every adapter has run.
    QTimer::singleShot(0, this, [this] { ShowIndex(m_bar->currentIndex()); });
}

// ---------------------------------------------------------------------------
// Answers to the strip

void BrowserWindow::OnCurrentChanged(int index)
{
    TabContainer *page = PageAt(index);
    if (page == m_current)
        return;
    if (m_current)
        m_current->OnDeactivated();
    m_current = page;
    if (!page)
        return;
    m_pageArea->setCurrentWidget(page->GetWidget());
    page->OnActivated(); // the page announces its address and state
    // A new tab waits for an address; any other page takes the keys itself.
    if (m_bar->GetTabData(index)->IsNewTab())
        m_nav->FocusAddress();
    else
        page->SetFocus();
    ShowIndex(index);
    setWindowTitle(tr("%1 - KelTab Browser").arg(m_bar->GetTabData(index)->GetTitle()));
}

void BrowserWindow::OnCloseRequested(int index)
{
    if (!CloseTabAt(index) && index >= 0 && index < kHomeTabs)
        ShowMessage(tr("The home tab stays open."));
}

void BrowserWindow::OnRefresh(int index)
{
    if (TabContainer *page = PageAt(index))
        page->ActionRefresh();
}

void BrowserWindow::OnAddFav(int index)
{
    const QString url = UrlAt(index);
    if (url.isEmpty()) {
        ShowMessage(tr("Only web pages can be bookmarked."));
        return;
    }
    if (!m_favourites.contains(url))
        m_favourites.append(url);
    if (index == m_bar->currentIndex())
        m_nav->SetFavourite(true);
    qInfo("Bookmarked %s", qUtf8Printable(url));
    ShowMessage(tr("Bookmarked %1").arg(url));
}

void BrowserWindow::OnCopyLink(int index)
{
    const QString url = UrlAt(index);
    if (url.isEmpty())
        return;
    QApplication::clipboard()->setText(url);
    ShowMessage(tr("Copied %1").arg(url));
}

void BrowserWindow::OnOpenInBrowser(int index)
{
    const QUrl url(UrlAt(index));
    if (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https")) {
        ShowMessage(tr("Only http and https pages open in the system browser."));
        return;
    }
    if (!QDesktopServices::openUrl(url))
        ShowMessage(tr("No system browser could open %1").arg(url.toString()));
}

void BrowserWindow::OnCloseOthers(int index)
{
    // The tab the menu was opened on stays, and becomes current first so that
    // closing the others does not hop from neighbour to neighbour.
    const TabDataPtr keep = m_bar->GetTabData(index);
    if (!keep)
        return;
    m_bar->setCurrentIndex(index);
    for (int i = m_bar->count() - 1; i >= kHomeTabs; --i) {
        if (!m_bar->GetTabData(i)->IsEqual(keep))
            CloseTabAt(i);
    }
}

void BrowserWindow::OnCloseLeft(int index)
{
    if (!m_bar->GetTabData(index))
        return;
    if (m_bar->currentIndex() < index)
        m_bar->setCurrentIndex(index);
    for (int i = index - 1; i >= kHomeTabs; --i)
        CloseTabAt(i);
}

void BrowserWindow::OnCloseRight(int index)
{
    if (!m_bar->GetTabData(index))
        return;
    if (m_bar->currentIndex() > index)
        m_bar->setCurrentIndex(index);
    for (int i = m_bar->count() - 1; i > index; --i)
        CloseTabAt(i);
}

void BrowserWindow::OnAddressEntered(const QString &text)
{
    const QString url = TabRecordFactory::FromUserInput(text);
    if (url.isEmpty())
        return;
    if (auto *page = dynamic_cast<TextBrowserPage *>(m_current))
        page->OpenUrl(url);
    else
        OpenUrl(url, true);
}

void BrowserWindow::OnFind(const QString &text)
{
    auto *page = dynamic_cast<TextBrowserPage *>(m_current);
    if (page && !page->Find(text, false))
        ShowMessage(tr("\"%1\" is not on this page.").arg(text));
}

// ---------------------------------------------------------------------------
// Helpers

void BrowserWindow::ApplyWindowStyle()
{
    QFile file(QStringLiteral(":/browser/browser.qss"));
    if (!file.open(QIODevice::ReadOnly))
        return;
    QString sheet = QString::fromUtf8(file.readAll());
    static const QRegularExpression size(QStringLiteral("S\\((\\d+)\\)"));
    QString scaled;
    int last = 0;
    QRegularExpressionMatchIterator it = size.globalMatch(sheet);
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        scaled += QStringView(sheet).mid(last, match.capturedStart() - last);
        scaled += QString::number(DpiTool::ScaleDefault(match.captured(1).toInt()));
        last = match.capturedEnd();
    }
    scaled += QStringView(sheet).mid(last);
    setStyleSheet(scaled);
}

void BrowserWindow::ShowMessage(const QString &text)
{
    statusBar()->showMessage(text, kMessageMs);
    Q_EMIT SigStatusMessage(text);
}

std::unique_ptr<TabContainer> BrowserWindow::CreatePage(TabDataPtr tab)
{
    if (tab->IsHomePage())
        return std::make_unique<HomePage>(tab, this);
    if (tab->IsPlugin())
        return std::make_unique<PluginPage>(tab);
    return std::make_unique<TextBrowserPage>(tab, m_network);
}

TabContainer *BrowserWindow::PageFor(TabDataPtr tab) const
{
    if (!tab)
        return nullptr;
    const auto it = std::find_if(m_pages.begin(), m_pages.end(), [&tab](const std::unique_ptr<TabContainer> &page) {
        return page->GetTabData() && page->GetTabData()->IsEqual(tab);
    });
    return it == m_pages.end() ? nullptr : it->get();
}

TabContainer *BrowserWindow::PageAt(int index) const
{
    return PageFor(m_bar->GetTabData(index));
}

void BrowserWindow::DestroyPage(TabContainer *page)
{
    if (!page)
        return;
    if (m_current == page)
        m_current = nullptr;
    const auto it = std::find_if(m_pages.begin(), m_pages.end(),
                                 [page](const std::unique_ptr<TabContainer> &p) { return p.get() == page; });
    if (it != m_pages.end())
        m_pages.erase(it);
}

QString BrowserWindow::UrlAt(int index) const
{
    // Only web pages have an address worth copying, bookmarking or handing on.
    const TabDataPtr tab = m_bar->GetTabData(index);
    return tab && (tab->IsWeb() || tab->IsWebPopup()) ? tab->GetUrl() : QString();
}

bool BrowserWindow::IsCurrentTab(TabDataPtr tab) const
{
    return m_current && tab && m_current->GetTabData() && m_current->GetTabData()->IsEqual(tab);
}
