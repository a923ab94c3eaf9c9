// SPDX-License-Identifier: MIT
// BrowserTabBarEx context menu: its entries, what each tab kind shows, what each position
// enables, the command signals, the relayout after it closes, and hosts that remove tabs
// or delete the bar from a command while the menu runs. Every menu really opens (a popup,
// hence Xvfb) and is answered from its own event loop.

#include "keltabtest.h"

#include "barwindowtest.h"
#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "dpitool.h"
#include "kelmenu.h"
#include "tabbarextestbar.h"
#include "vosimagecache.h"

#include <QAction>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>

#include <functional>
#include <memory>

using namespace TabTest;

namespace {

// Positions in the menu's action list.
enum Position {
    Refresh = 0,
    AddFav = 1,
    CopyLink = 2,
    OpenInBrowser = 3,
    UpperSeparator = 4,
    CloseTab = 5,
    CloseOther = 6,
    CloseRight = 7,
    CloseLeft = 8,
    RecoverySeparator = 9,
    Recovery = 10,
};

// A host whose close policy the test sets, and which records the index it is asked about.
class PolicyBar : public TestTabBarEx
{
public:
    using TestTabBarEx::TestTabBarEx;

    int closeCurPolicy = -1; // -1: the base class decides
    QList<int> askedIndexes;

    bool CheckCloseCurItem(int index) override
    {
        askedIndexes << index;
        return closeCurPolicy < 0 ? BrowserTabBarEx::CheckCloseCurItem(index) : closeCurPolicy == 1;
    }
};

struct MenuState
{
    QStringList texts;
    QList<bool> separators;
    QList<bool> visible;
    QList<bool> enabled;
    QPoint pos;
    bool shown = false;
};

} // namespace

Q_DECLARE_METATYPE(QList<bool>)

class TstBrowserTabBarExMenu : public BarWindowTest
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

private Q_SLOTS:
    void initTestCase();

    void initMenuBuildsEntries();
    void initMenuWithRecovery();
    void noMenuBeforeInit();
    void entriesByKindAndPosition_data();
    void entriesByKindAndPosition();
    void policyDecidesCloseTab();
    void recoveryEnabledByPolicy_data();
    void recoveryEnabledByPolicy();
    void commandsEmitForMenuTab_data();
    void commandsEmitForMenuTab();
    void addFavCarriesIconPosition_data();
    void addFavCarriesIconPosition();
    void menuOpensAtCursor();
    void closeTabFromMenuLaysOutAtOnce();
    void closeTabFromMenuEndsFrozenWidths();
    void layoutAfterMenu_data();
    void layoutAfterMenu();
    void menuCommandFollowsItsTab();
    void rightClickOpensMenuAndPickCloses();

    void tabsRemovedByCommandWhileMenuOpen();
    void rightClickedTabRemovedWhileMenuOpen();
    void barDeletedByCommandWhileMenuOpen();
    void barDeletedWhileMenuOpen();

private:
    QPointer<PolicyBar> m_bar;
    QTemporaryDir m_dir;

    void PrepareTest() override;
    PolicyBar *MakeBar(int scrolling, bool init = true);
    KelMenu *Menu() const { return m_bar ? m_bar->findChild<KelMenu *>(QStringLiteral("BrowserTabBarMenu")) : nullptr; }
    // Opens the menu of the tab at @p index; once it is up, @p answer runs from the
    // menu's own event loop and must pick an entry or close it.
    void RunMenu(int index, const std::function<void(KelMenu *)> &answer);
    // Opens the menu, records it and closes it.
    MenuState Snapshot(int index);
    // Opens the menu and triggers the entry at @p position.
    void Pick(int index, int position);
    static MenuState Read(KelMenu *menu);
};

void TstBrowserTabBarExMenu::initTestCase()
{
    OpenIconCache(m_dir);
}

// Each test starts at scale 1.0, without a bar or a popup, the pointer at (300, 300).
void TstBrowserTabBarExMenu::PrepareTest()
{
    QCursor::setPos(300, 300);
}

PolicyBar *TstBrowserTabBarExMenu::MakeBar(int scrolling, bool init)
{
    m_bar = NewBarInWindow<PolicyBar>(1000);
    m_window->move(100, 100);
    if (init)
        m_bar->InitMenu();
    Fill(*m_bar, scrolling);
    return m_bar;
}

void TstBrowserTabBarExMenu::RunMenu(int index, const std::function<void(KelMenu *)> &answer)
{
    KelMenu *menu = Menu();
    QVERIFY(menu);
    bool answered = false;
    const QMetaObject::Connection connection =
        connect(menu, &QMenu::aboutToShow, menu, [menu, answer, &answered] {
            QTimer::singleShot(0, menu, [menu, answer, &answered] {
                answered = true;
                answer(menu);
            });
        });
    const QPointer<KelMenu> guard(menu);
    m_bar->SlotMenuClicked(m_bar->GetTabData(index));
    QVERIFY(answered);
    if (guard)
        disconnect(connection);
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(nullptr));
}

MenuState TstBrowserTabBarExMenu::Read(KelMenu *menu)
{
    MenuState state;
    state.shown = menu->isVisible();
    state.pos = KelTest::MenuAnchor(menu);
    for (QAction *action : menu->actions()) {
        state.texts << action->text();
        state.separators << action->isSeparator();
        state.visible << action->isVisible();
        state.enabled << action->isEnabled();
    }
    return state;
}

MenuState TstBrowserTabBarExMenu::Snapshot(int index)
{
    MenuState state;
    RunMenu(index, [&state](KelMenu *menu) {
        state = Read(menu);
        menu->close();
    });
    return state;
}

void TstBrowserTabBarExMenu::Pick(int index, int position)
{
    RunMenu(index, [position](KelMenu *menu) {
        const QPointer<KelMenu> guard(menu);
        menu->actions().at(position)->trigger();
        // A command may have deleted the bar and its menu.
        if (guard)
            guard->close();
    });
}

void TstBrowserTabBarExMenu::initMenuBuildsEntries()
{
    MakeBar(3, false);
    QCOMPARE(m_bar->contextMenuPolicy(), Qt::DefaultContextMenu);
    QVERIFY(!Menu());
    m_bar->InitMenu();
    QCOMPARE(m_bar->contextMenuPolicy(), Qt::CustomContextMenu);
    KelMenu *menu = Menu();
    QVERIFY(menu);
    QCOMPARE(menu->parent(), static_cast<QObject *>(m_bar));
    QVERIFY(menu->isHidden());
    const QList<QAction *> actions = menu->actions();
    QStringList texts;
    for (QAction *action : actions) {
        texts << (action->isSeparator() ? QStringLiteral("-") : action->text());
        // Parented to the bar, so that the bar's end takes them along.
        if (!action->isSeparator())
            QCOMPARE(action->parent(), static_cast<QObject *>(m_bar));
    }
    QCOMPARE(texts, QStringList({"Refresh tab", "Add Fav", "Copy link", "Open in Browser", "-", "Close tab",
                                 "Close other tabs", "Close right tabs", "Close left tabs"}));
    // Once only.
    m_bar->InitMenu();
    QCOMPARE(m_bar->findChildren<KelMenu *>().size(), 1);
    QCOMPARE(Menu()->actions().size(), 9);
}

void TstBrowserTabBarExMenu::initMenuWithRecovery()
{
    MakeBar(2, false);
    m_bar->overrideRecovery = true;
    m_bar->showRecovery = true;
    m_bar->InitMenu();
    const QList<QAction *> actions = Menu()->actions();
    QCOMPARE(actions.size(), 11);
    QVERIFY(actions.at(RecoverySeparator)->isSeparator());
    QCOMPARE(actions.at(Recovery)->text(), QStringLiteral("Recover recently closed tabs"));
    QCOMPARE(actions.at(Recovery)->parent(), static_cast<QObject *>(m_bar));
}

void TstBrowserTabBarExMenu::noMenuBeforeInit()
{
    MakeBar(2, false);
    QSignalSpy spy(m_bar, &BrowserTabBarEx::SigRefreshTab);
    // Returns at once: no menu to run.
    m_bar->SlotMenuClicked(m_bar->GetTabData(1));
    QVERIFY(!QApplication::activePopupWidget());
    m_bar->SlotMenuClicked(TabDataPtr());
    m_bar->SlotMenuClicked(Web(QStringLiteral("unknown")));
    QCOMPARE(spy.count(), 0);
}

void TstBrowserTabBarExMenu::entriesByKindAndPosition_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("scrolling"); // web tabs beside the home tab
    QTest::addColumn<int>("index");     // where the tab of that kind goes
    QTest::addColumn<QList<bool>>("visible");
    QTest::addColumn<QList<bool>>("enabled");

    // Positions 0 to 4 by kind; 5 to 8 always shown.
    struct Kind
    {
        const char *name;
        TabData::TabType type;
        QList<bool> upper;
    };
    const QList<Kind> kinds = {
        {"web", TabData::TabTypeWeb, {true, true, true, true, true}},
        {"web popup", TabData::TabTypeWebPopup, {true, true, true, true, true}},
        {"plug-in", TabData::TabTypePlugin, {true, true, false, false, true}},
        {"home", TabData::TabTypeHomePage, {true, false, false, false, true}},
        {"new tab", TabData::TabTypeNewTab, {false, false, false, false, false}},
        {"other", TabData::TabTypeOther, {false, false, false, false, false}},
        {"none", TabData::TabTypeNone, {false, false, false, false, false}},
    };
    // Close tab, other, right, left by where the tab lies; the upper group is never disabled.
    struct Place
    {
        const char *name;
        int scrolling;
        int index;
        QList<bool> close;
    };
    const QList<Place> places = {
        {"leftmost", 3, 0, {true, true, true, false}},
        {"middle", 3, 2, {true, true, true, true}},
        {"rightmost", 3, 3, {true, true, false, true}},
        {"single", 0, 0, {true, false, false, false}},
    };
    for (const Kind &kind : kinds) {
        for (const Place &place : places) {
            QTest::addRow("%s, %s", kind.name, place.name)
                << int(kind.type) << place.scrolling << place.index
                << (kind.upper + QList<bool>({true, true, true, true}))
                // The bar never disables the upper group; a hidden action reports itself
                // disabled, as Qt has it.
                << (kind.upper + place.close);
        }
    }
}

void TstBrowserTabBarExMenu::entriesByKindAndPosition()
{
    QFETCH(int, kind);
    QFETCH(int, scrolling);
    QFETCH(int, index);
    QFETCH(QList<bool>, visible);
    QFETCH(QList<bool>, enabled);
    MakeBar(0);
    // The home tab of Fill() is replaced by the tab under test where it goes first.
    m_bar->removeTab(0);
    for (int i = 0; i <= scrolling; ++i) {
        if (i == index)
            m_bar->addTab(MakeTab(TabData::TabType(kind), QStringLiteral("under test")));
        else
            m_bar->addTab(i == 0 ? Home() : Web(QStringLiteral("Tab %1").arg(i)));
    }
    QCOMPARE(m_bar->GetIndexByName(QStringLiteral("under test")), index);

    const MenuState state = Snapshot(index);
    QVERIFY(state.shown);
    QCOMPARE(state.separators, QList<bool>({false, false, false, false, true, false, false, false, false}));
    QCOMPARE(state.visible, visible);
    QCOMPARE(state.enabled, enabled);
    // The menu begins with "Close tab" when the upper group is hidden.
    int first = 0;
    while (!state.visible.at(first))
        ++first;
    QCOMPARE(first, visible.at(Refresh) ? int(Refresh) : int(CloseTab));
}

void TstBrowserTabBarExMenu::policyDecidesCloseTab()
{
    MakeBar(3);
    m_bar->closeCurPolicy = 0;
    MenuState state = Snapshot(2);
    QVERIFY(!state.enabled.at(CloseTab));
    QCOMPARE(m_bar->askedIndexes, QList<int>({2}));
    m_bar->closeCurPolicy = 1;
    state = Snapshot(3);
    QVERIFY(state.enabled.at(CloseTab));
    QCOMPARE(m_bar->askedIndexes, QList<int>({2, 3}));
}

void TstBrowserTabBarExMenu::recoveryEnabledByPolicy_data()
{
    QTest::addColumn<bool>("recoveryEnabled");
    QTest::newRow("enabled") << true;
    QTest::newRow("disabled") << false;
}

void TstBrowserTabBarExMenu::recoveryEnabledByPolicy()
{
    QFETCH(bool, recoveryEnabled);
    MakeBar(3, false);
    m_bar->overrideRecovery = true;
    m_bar->showRecovery = true;
    m_bar->recoveryEnabled = recoveryEnabled;
    m_bar->InitMenu();
    const MenuState state = Snapshot(1);
    QCOMPARE(state.texts.size(), 11);
    QVERIFY(state.visible.at(RecoverySeparator));
    QVERIFY(state.visible.at(Recovery));
    QCOMPARE(state.enabled.at(Recovery), recoveryEnabled);
    // The base class has no recovery entry at all.
    MakeBar(3);
    QCOMPARE(Snapshot(1).texts.size(), 9);
}

void TstBrowserTabBarExMenu::commandsEmitForMenuTab_data()
{
    // The spy that must fire, by its place in the list made by the test.
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("spy");
    QTest::addColumn<bool>("withIndex");
    QTest::newRow("Refresh tab") << int(Refresh) << 0 << true;
    QTest::newRow("Add Fav") << int(AddFav) << 1 << true;
    QTest::newRow("Copy link") << int(CopyLink) << 2 << true;
    QTest::newRow("Open in Browser") << int(OpenInBrowser) << 3 << true;
    QTest::newRow("Close tab") << int(CloseTab) << 4 << true;
    QTest::newRow("Close other tabs") << int(CloseOther) << 5 << true;
    QTest::newRow("Close right tabs") << int(CloseRight) << 6 << true;
    QTest::newRow("Close left tabs") << int(CloseLeft) << 7 << true;
    QTest::newRow("Recover recently closed tabs") << int(Recovery) << 8 << false;
}

void TstBrowserTabBarExMenu::commandsEmitForMenuTab()
{
    QFETCH(int, position);
    QFETCH(int, spy);
    QFETCH(bool, withIndex);
    MakeBar(4, false);
    m_bar->overrideRecovery = true;
    m_bar->showRecovery = true;
    m_bar->recoveryEnabled = true;
    m_bar->InitMenu();
    // Every signal of the bar, to check that exactly the one of the entry fires.
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    spies.emplace_back(new QSignalSpy(m_bar, &BrowserTabBarEx::SigRefreshTab));
    spies.emplace_back(new QSignalSpy(m_bar, &BrowserTabBarEx::SigAddFav));
    spies.emplace_back(new QSignalSpy(m_bar, &BrowserTabBarEx::SigCopyLink));
    spies.emplace_back(new QSignalSpy(m_bar, &BrowserTabBarEx::SigOpenInBrowser));
    spies.emplace_back(new QSignalSpy(m_bar, &BrowserTabBarEx::tabCloseRequested));
    spies.emplace_back(new QSignalSpy(m_bar, &BrowserTabBarEx::SigCloseOtherTab));
    spies.emplace_back(new QSignalSpy(m_bar, &BrowserTabBarEx::SigCloseRightTab));
    spies.emplace_back(new QSignalSpy(m_bar, &BrowserTabBarEx::SigCloseLeftTab));
    spies.emplace_back(new QSignalSpy(m_bar, &BrowserTabBarEx::SigRecoverRecentlyTab));
    spies.emplace_back(new QSignalSpy(m_bar, &BrowserTabBarEx::currentChanged));
    spies.emplace_back(new QSignalSpy(m_bar, &BrowserTabBarEx::SigAddNewTab));
    Pick(3, position);
    for (size_t i = 0; i < spies.size(); ++i) {
        const bool expected = int(i) == spy;
        QCOMPARE(spies.at(i)->count(), expected ? 1 : 0);
        if (expected && withIndex)
            QCOMPARE(spies.at(i)->at(0).at(0).toInt(), 3);
    }
    // Nothing was removed: the host did not answer.
    QCOMPARE(m_bar->count(), 5);
}

void TstBrowserTabBarExMenu::addFavCarriesIconPosition_data()
{
    KelTest::AddScaleColumn();
    QTest::addColumn<QPoint>("offset"); // of the icon in the button: (12, 8) scaled
    QTest::newRow("1.0") << 1.0 << QPoint(12, 8);
    QTest::newRow("1.5") << 1.5 << QPoint(18, 12);
}

void TstBrowserTabBarExMenu::addFavCarriesIconPosition()
{
    QFETCH(QPoint, offset);
    KelTest::UseRowScale();
    MakeBar(4);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QSignalSpy fav(m_bar, &BrowserTabBarEx::SigAddFav);
    Pick(2, AddFav);
    QCOMPARE(fav.count(), 1);
    QCOMPARE(fav.at(0).at(0).toInt(), 2);
    const QPoint expected = m_bar->TabButton(2)->GetIconGlobalPos();
    QCOMPARE(fav.at(0).at(1).toPoint(), expected);
    const int iconSize = DpiTool::ScaleDefault(16);
    BrowserTabButtonEx *button = m_bar->TabButton(2);
    QCOMPARE(expected, button->mapToGlobal(KelTest::VisualRect(button, QRect(offset, QSize(iconSize, iconSize))).topLeft()));
    QVERIFY(expected != QPoint(0, 0));
}

void TstBrowserTabBarExMenu::menuOpensAtCursor()
{
    MakeBar(3);
    QCursor::setPos(420, 230);
    const MenuState state = Snapshot(1);
    QCOMPARE(state.pos, QPoint(420, 230));
}

void TstBrowserTabBarExMenu::closeTabFromMenuLaysOutAtOnce()
{
    MakeBar(6);
    m_bar->setCurrentIndex(6);
    QCOMPARE(m_bar->ScrollingWidths(), QList<int>({166, 166, 166, 166, 166, 166}));
    PolicyBar *bar = m_bar;
    QList<int> widthsRightAfter;
    connect(bar, &BrowserTabBarEx::tabCloseRequested, bar, [bar, &widthsRightAfter](int index) {
        bar->removeTab(index);
        widthsRightAfter = bar->ScrollingWidths();
    });
    QSignalSpy requested(bar, &BrowserTabBarEx::tabCloseRequested);
    Pick(3, CloseTab);
    QCOMPARE(requested.count(), 1);
    QCOMPARE(requested.at(0).at(0).toInt(), 3);
    // The removal itself was laid out at once: five tabs of 200, no frozen widths.
    QCOMPARE(widthsRightAfter, QList<int>({200, 200, 200, 200, 200}));
    QCOMPARE(bar->ScrollingWidths(), QList<int>({200, 200, 200, 200, 200}));
    QCOMPARE(bar->ScrollingXs(), QList<int>({0, 200, 400, 600, 800}));
    // Nor does a later removal freeze them.
    bar->removeTab(1);
    QCOMPARE(bar->ScrollingWidths(), QList<int>({224, 224, 224, 224}));
}

void TstBrowserTabBarExMenu::closeTabFromMenuEndsFrozenWidths()
{
    MakeBar(6);
    m_bar->setCurrentIndex(6);
    PolicyBar *bar = m_bar;
    connect(bar, &BrowserTabBarEx::tabCloseRequested, bar, [bar](int index) { bar->removeTab(index); });
    // A close button froze the widths ...
    QVERIFY(QMetaObject::invokeMethod(bar->TabButton(2), "SlotCloseClicked"));
    QCOMPARE(bar->ScrollingWidths(), QList<int>({166, 166, 166, 166, 166}));
    // ... and the menu's close lays the strip out again once the menu is gone.
    Pick(2, CloseTab);
    QCOMPARE(bar->ScrollingWidths(), QList<int>({224, 224, 224, 224}));
    QCOMPARE(bar->ScrollingXs(), QList<int>({0, 224, 448, 672}));
}

void TstBrowserTabBarExMenu::layoutAfterMenu_data()
{
    QTest::addColumn<int>("position"); // -1: dismissed
    QTest::newRow("dismissed") << -1;
    QTest::newRow("Refresh tab chosen") << int(Refresh);
    QTest::newRow("Close right tabs chosen") << int(CloseRight);
}

void TstBrowserTabBarExMenu::layoutAfterMenu()
{
    QFETCH(int, position);
    MakeBar(4);
    m_bar->TabButton(2)->setFixedSize(10, 10);
    m_bar->TabButton(4)->move(500, 20);
    if (position < 0) {
        RunMenu(1, [](KelMenu *menu) { menu->close(); });
    } else {
        Pick(1, position);
    }
    QCOMPARE(m_bar->TabButton(2)->size(), QSize(224, 32));
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, 224, 448, 672}));
}

void TstBrowserTabBarExMenu::menuCommandFollowsItsTab()
{
    MakeBar(4);
    Snapshot(4);
    QSignalSpy refresh(m_bar, &BrowserTabBarEx::SigRefreshTab);
    m_bar->SlotRefreshTab();
    QCOMPARE(refresh.count(), 1);
    QCOMPARE(refresh.at(0).at(0).toInt(), 4);
    // The default close policies read the menu's tab: the last one.
    QVERIFY(!m_bar->CheckCloseRightItem(0));
    QVERIFY(m_bar->CheckCloseLeftItem(0));
    // A tab before it goes: the command still acts on the same tab, now at 3.
    m_bar->removeTab(1);
    m_bar->SlotRefreshTab();
    QCOMPARE(refresh.count(), 2);
    QCOMPARE(refresh.at(1).at(0).toInt(), 3);
    QVERIFY(!m_bar->CheckCloseRightItem(0));
    // The tab itself goes: the command has nothing to act on.
    m_bar->removeTab(3);
    m_bar->SlotRefreshTab();
    QCOMPARE(refresh.count(), 2);
}

void TstBrowserTabBarExMenu::rightClickOpensMenuAndPickCloses()
{
    MakeBar(4);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    PolicyBar *bar = m_bar;
    connect(bar, &BrowserTabBarEx::tabCloseRequested, bar, [bar](int index) { bar->removeTab(index); });
    KelMenu *menu = Menu();
    QPoint shownAt;
    // Once up, the user clicks "Close tab" with the mouse.
    connect(menu, &QMenu::aboutToShow, menu, [menu, &shownAt] {
        QTimer::singleShot(0, menu, [menu, &shownAt] {
            shownAt = KelTest::MenuAnchor(menu);
            const QPoint item = menu->actionGeometry(menu->actions().at(CloseTab)).center();
            QTest::mouseClick(menu->windowHandle(), Qt::LeftButton, {}, item);
        });
    });
    BrowserTabButtonEx *clicked = bar->TabButton(3);
    const QPoint local = clicked->mapTo(m_window.get(), QPoint(60, 16));
    const QPoint global = m_window->windowHandle()->mapToGlobal(local);
    QCursor::setPos(global);
    QSignalSpy requested(bar, &BrowserTabBarEx::tabCloseRequested);
    QTest::mousePress(m_window->windowHandle(), Qt::RightButton, {}, local);
    QCOMPARE(shownAt, global);
    QCOMPARE(requested.count(), 1);
    QCOMPARE(requested.at(0).at(0).toInt(), 3);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"Home", "Tab 1", "Tab 2", "Tab 4"}));
    QTest::mouseRelease(m_window->windowHandle(), Qt::RightButton, {}, local);
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(nullptr));
    QCOMPARE(bar->ScrollingXs(), QList<int>({0, 224, 448}));
}

void TstBrowserTabBarExMenu::tabsRemovedByCommandWhileMenuOpen()
{
    MakeBar(6);
    PolicyBar *bar = m_bar;
    QList<QPointer<BrowserTabButtonEx>> removed;
    connect(bar, &BrowserTabBarEx::SigCloseOtherTab, bar, [bar, &removed](int keep) {
        const TabDataPtr kept = bar->GetTabData(keep);
        for (int i = bar->count() - 1; i >= 1; --i) {
            if (bar->GetTabData(i) != kept) {
                removed << bar->TabButton(i);
                bar->removeTab(i);
            }
        }
    });
    Pick(3, CloseOther);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"Home", "Tab 3"}));
    QCOMPARE(bar->ScrollingXs(), QList<int>({0}));
    QCOMPARE(bar->ScrollingWidths(), QList<int>({224}));
    QCOMPARE(removed.size(), 5);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (const QPointer<BrowserTabButtonEx> &button : removed)
        QVERIFY(!button);
}

void TstBrowserTabBarExMenu::rightClickedTabRemovedWhileMenuOpen()
{
    // The tab whose right press opened the menu is closed from it: its button must live
    // until the press that opened the menu is over.
    MakeBar(3);
    PolicyBar *bar = m_bar;
    QPointer<BrowserTabButtonEx> button = bar->TabButton(2);
    bool aliveAfterRemoval = false;
    connect(bar, &BrowserTabBarEx::tabCloseRequested, bar, [bar, &button, &aliveAfterRemoval](int index) {
        bar->removeTab(index);
        // Whatever runs in the menu's loop next, the button is still there.
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        aliveAfterRemoval = !button.isNull();
    });
    Pick(2, CloseTab);
    QVERIFY(aliveAfterRemoval);
    QVERIFY(button);
    QVERIFY(button->isHidden());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!button);
}

void TstBrowserTabBarExMenu::barDeletedByCommandWhileMenuOpen()
{
    MakeBar(3);
    connect(m_bar, &BrowserTabBarEx::SigRefreshTab, this, [this](int) { m_window.reset(); });
    QPointer<PolicyBar> guard(m_bar);
    KelMenu *menu = Menu();
    const QPointer<KelMenu> alive(menu);
    bool aliveAfterCommand = false;
    connect(menu, &QMenu::aboutToShow, menu, [menu, &alive, &aliveAfterCommand] {
        QTimer::singleShot(0, menu, [menu, &alive, &aliveAfterCommand] {
            menu->actions().at(Refresh)->trigger();
            // The menu is still inside its command: it outlives the bar until it returns.
            aliveAfterCommand = !alive.isNull();
        });
    });
    PolicyBar *bar = m_bar;
    m_bar = nullptr;
    bar->SlotMenuClicked(bar->GetTabData(1));
    QVERIFY(!guard);
    QVERIFY(aliveAfterCommand);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!alive);
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(nullptr));
}

void TstBrowserTabBarExMenu::barDeletedWhileMenuOpen()
{
    MakeBar(3);
    QPointer<PolicyBar> guard(m_bar);
    KelMenu *menu = Menu();
    connect(menu, &QMenu::aboutToShow, menu, [this, menu] {
        QTimer::singleShot(0, menu, [this] { m_window.reset(); });
    });
    PolicyBar *bar = m_bar;
    m_bar = nullptr;
    bar->SlotMenuClicked(bar->GetTabData(2));
    QVERIFY(!guard);
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(nullptr));
}

KELTAB_TEST_MAIN(TstBrowserTabBarExMenu)
#include "tst_browsertabbarexmenu.moc"
