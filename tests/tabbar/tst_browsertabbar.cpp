#include "keltabtest.h"

#include "browsertabmoveproxy.h"
#include "itabmanager.h"
#include "kelmenu.h"
#include "kelpushbutton.h"
#include "keltabstyle.h"
#include "tabbartestutil.h"

#include <QMenu>
#include <QRandomGenerator>

#include <functional>

using namespace ClassicTest;

namespace {

KelPushButton *CloseButtonOf(BrowserTabButton *button)
{
    return button->findChild<KelPushButton *>(QStringLiteral("TabButtonCloseBtn"));
}

KelMenu *MenuOf(BrowserTabBar *bar)
{
    return bar->findChild<KelMenu *>(QStringLiteral("BrowserTabBarMenu"));
}

void SendEvent(QWidget *widget, QEvent::Type type)
{
    QEvent event(type);
    QCoreApplication::sendEvent(widget, &event);
}

/** Clicks a tab's close button the way a user does: hover the tab, then click. */
void ClickClose(BrowserTabBar *bar, int index)
{
    BrowserTabButton *button = ButtonAt(bar, index);
    SendEvent(button, QEvent::Enter);
    QTest::mouseClick(CloseButtonOf(button), Qt::LeftButton);
}

/** Moves the pointer out of the bar and lets the bar hear it leave. */
void LeaveBar(BrowserTabBar *bar)
{
    QCursor::setPos(bar->mapToGlobal(QPoint(bar->width() / 2, bar->height() + 200)));
    SendEvent(bar, QEvent::Leave);
}

BrowserTabMoveProxy *ActiveProxy()
{
    return qobject_cast<BrowserTabMoveProxy *>(QApplication::activePopupWidget());
}

/**
 * A drag as the bar sees it: the press is a mouse press on the tab, each move a mouse
 * move delivered to the proxy popup that holds the mouse, the release a left release
 * on the proxy. The pointer is placed with QCursor::setPos as well.
 */
class SlotDrag
{
public:
    SlotDrag(BrowserTabBar *bar, int index, QPoint at = QPoint())
        : m_bar(bar)
        , m_button(ButtonAt(bar, index))
    {
        if (at.isNull())
            at = m_button->rect().center();
        m_start = m_button->mapToGlobal(at);
        m_x0 = m_button->x();
        QCursor::setPos(m_start);
        ExpectPopupWarnings();
        QTest::mousePress(m_button, Qt::LeftButton, {}, at);
    }

    /** Moves the pointer so that the held tab's left edge would lie at @p left. */
    void MoveLeftEdgeTo(int left)
    {
        const QPoint global = m_start + QPoint(left - m_x0, 0);
        QCursor::setPos(global);
        if (BrowserTabMoveProxy *proxy = ActiveProxy()) {
            QMouseEvent move(QEvent::MouseMove, proxy->mapFromGlobal(global), global, Qt::NoButton, Qt::LeftButton,
                             Qt::NoModifier);
            QApplication::sendEvent(proxy, &move);
        }
    }

    void MoveRightEdgeTo(int right) { MoveLeftEdgeTo(right - m_button->width()); }

    void Release()
    {
        if (BrowserTabMoveProxy *proxy = ActiveProxy())
            QTest::mouseRelease(proxy, Qt::LeftButton);
    }

    BrowserTabButton *Button() const { return m_button; }

private:
    BrowserTabBar *m_bar;
    BrowserTabButton *m_button;
    QPoint m_start;
    int m_x0 = 0;
};

/** What a context menu showed, and what the test did with it. */
struct MenuRun
{
    bool shown = false;
    QVector<bool> enabled;
    QVector<bool> separator;
    QStringList texts;
};

/** Clicks the action at @p pick in an open menu, as a user does (hover, then click). */
void ClickMenuItem(QMenu *menu, int pick)
{
    QAction *action = menu->actions().at(pick);
    const QPoint pos = menu->actionGeometry(action).center();
    QMouseEvent move(QEvent::MouseMove, pos, menu->mapToGlobal(pos), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(menu, &move);
    QTest::mouseClick(menu, Qt::LeftButton, {}, pos);
}

/**
 * Right-presses the tab at @p index. When the menu shows, records its state and,
 * queued inside the menu's own event loop, runs @p whileOpen, then clicks the action
 * at @p pick (or, for -1 or a disabled action, dismisses the menu).
 */
MenuRun RunMenu(BrowserTabBar *bar, int index, int pick, bool expectShown = true,
                const std::function<void()> &whileOpen = {})
{
    MenuRun run;
    QMenu *menu = MenuOf(bar);
    QMetaObject::Connection connection;
    if (menu) {
        connection = QObject::connect(menu, &QMenu::aboutToShow, menu, [&run, menu, pick, whileOpen] {
            run.shown = true;
            const auto actions = menu->actions();
            for (QAction *action : actions) {
                run.enabled << action->isEnabled();
                run.separator << action->isSeparator();
                run.texts << action->text();
            }
            QMetaObject::invokeMethod(menu, [menu, pick, whileOpen] {
                if (whileOpen)
                    whileOpen();
                if (pick >= 0)
                    ClickMenuItem(menu, pick);
                if (menu->isVisible())
                    menu->close();
            }, Qt::QueuedConnection);
        });
    }
    if (expectShown)
        ExpectPopupWarnings();
    QTest::mousePress(ButtonAt(bar, index), Qt::RightButton);
    if (menu)
        QObject::disconnect(connection);
    return run;
}

class CountingManager : public ITabManager
{
public:
    TabContainer *GetTabContainer(TabDataPtr) override { ++calls; return nullptr; }
    int OpenTab(TabDataPtr, bool) override { ++calls; return -1; }
    bool CloseTab(TabDataPtr) override { ++calls; return false; }
    TabContainer *GetCurrentTabContainer() override { ++calls; return nullptr; }
    int calls = 0;
};

} // namespace

class TstBrowserTabBar : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    // tabs, lookups and the current tab
    void addTabReturnsIndexAndRejectsNull();
    void insertKeepsCurrentTab_data();
    void insertKeepsCurrentTab();
    void insertIndexIsClamped();
    void setCurrentIndexSameEmitsNothing();
    void setCurrentIndexMinusOneUnchecksAll();
    void setCurrentIndexBeyondCountDoesNothing();
    void currentTabIsCheckedAndOnTop();
    void pressingATabMakesItCurrent();
    void lookups();
    void getIndexByNameIsCaseSensitive();
    void currentIconUrlAndPathNeedACurrentTab();
    void setTabIconEmptyLeavesIcon();
    void forwardingIgnoresOutOfRange();
    void forwardingReachesTheButton();
    void newTabButtonEmitsOnlyTheSignal();
    void tabManagerIsOnlyStored();
    void buttonsLiveInTheStripAndNewOnesGoBelow();

    // widths, placement and closing
    void layoutRules_data();
    void layoutRules();
    void singleTabIsFollowedByNewTabButton();
    void squeezedTabsPutNewTabButtonAtRightEnd();
    void tinyBarKeepsMaxWidth();
    void closeButtonsFollowCommonWidthWithoutResize();
    void closeMiddleByMouseKeepsWidthsUntilLeave();
    void leaveInsideTheBarStartsNoTimer();
    void closeLastByMouseFitsTheStripAtOnce();
    void closeTypeChoosesNeighbour_data();
    void closeTypeChoosesNeighbour();
    void removeOutOfRangeIsIgnored();
    void removeBeforeCurrentKeepsCurrentTab();
    void resizeFitsAgainAndEndsFrozenWidths();
    void relayoutTimerIsAChildSingleShot();
    void scaleChangeLaysOutAgain();

    // drag reordering through the bar's slots
    void pressWithoutMoveChangesNothing();
    void dragSecondOfThreeLeft_data();
    void dragSecondOfThreeLeft();
    void dragRightToTheEndMovesToLast();
    void dragThresholds_data();
    void dragThresholds();
    void firstIndexOneProtectsIndexZero();
    void negativeFirstIndexActsAsZero();
    void dragHidesNewTabButtonAndWidensStrip();
    void hideNewTabButtonSurvivesDrags();
    void tabButtonMovedFollowsEachHandledMove();
    void pressedTabRemovedDuringDrag();

    // context menu
    void menuEnabling_data();
    void menuEnabling();
    void menuWithoutRecoveryHasFourActions();
    void recoveryItem_data();
    void recoveryItem();
    void menuCommandsEmitTheirSignals_data();
    void menuCommandsEmitTheirSignals();
    void closeLeftOnTab2OnlyEmits();
    void disabledCommandDoesNothing();
    void unknownRecordOpensNoMenuAndKeepsMenuIndex();
    void menuRequestBeforeInitMenuDoesNothing();
    void initMenuTwiceBuildsOnce();
    void menuClosingFitsTabsAgain();
    void tabsRemovedWhileMenuIsOpen();
    void menuTabRemovedWhileMenuIsOpen();
    void barDeletedFromMenuCommand();
    void secondMenuRequestWhileOpenIsIgnored();
    void menuTabClosedByWindowRightClick();
    void barDeletedByWindowRightClickCommand_data();
    void barDeletedByWindowRightClickCommand();

    // hostile call orders
    void removeInsideCurrentChangedDuringRemove();
    void removeInsideTabCloseRequested();
    void insertInsideCurrentChanged();
    void currentSetBackToClosingTab();
    void nullRecordsAreHarmless();
    void removedButtonCannotReachTheBar();
    void barDeletedWithRelayoutTimerLive();
    void barDeletedWithProxyShown();
    void barDeletedWithButtonsUnderThePointer();

    // look
    void renderLook_data();
    void renderLook();

    // randomized model
    void randomizedModel_data();
    void randomizedModel();

private:
    std::unique_ptr<Environment> m_env;
};

void TstBrowserTabBar::init()
{
    m_env = std::make_unique<Environment>();
}

void TstBrowserTabBar::cleanup()
{
    FlushDeletes();
    m_env.reset();
}

namespace {

/** A shown bar of @p width with @p tabs web tabs titled t0, t1, ... */
std::unique_ptr<TestBar> MakeBar(int width, int tabs, int fixedCount = 0, int fixedWidth = 0)
{
    auto bar = std::make_unique<TestBar>();
    bar->fixedCount = fixedCount;
    bar->fixedWidth = fixedWidth;
    bar->setGeometry(100, 100, width, bar->minimumHeight());
    bar->show();
    for (int i = 0; i < tabs; ++i)
        bar->addTab(MakeTab(QStringLiteral("t%1").arg(i)));
    return bar;
}

bool OnlyCheckedIs(BrowserTabBar *bar, int index)
{
    const auto buttons = Buttons(bar);
    for (int i = 0; i < buttons.size(); ++i) {
        if (buttons.at(i)->IsChecked() != (i == index))
            return false;
    }
    return true;
}

/** The placement rule for movable tabs, given the common width and the one-pixel remainder. */
QList<int> ExpectedXs(int count, int fixedCount, int fixedWidth, int buttonWidth, int extra)
{
    QList<int> xs;
    const int spacing = S(2);
    const int fixedStep = fixedCount > 0 ? (fixedWidth - spacing) / fixedCount + spacing : 0;
    const int offset = fixedCount > 0 ? fixedWidth - spacing : 0;
    for (int i = 0; i < count; ++i) {
        if (i < fixedCount) {
            xs << (fixedStep - spacing) * i;
        } else {
            const int k = i - fixedCount;
            xs << (buttonWidth - spacing) * k + qMin(k, extra) + offset;
        }
    }
    return xs;
}

} // namespace

// --- tabs, lookups and the current tab --------------------------------------------

void TstBrowserTabBar::addTabReturnsIndexAndRejectsNull()
{
    auto bar = MakeBar(800, 0);
    QCOMPARE(bar->addTab(MakeTab(QStringLiteral("a"))), 0);
    QCOMPARE(bar->addTab(MakeTab(QStringLiteral("b"))), 1);
    // A host that hands over no record is told so, and nothing is added.
    QTest::ignoreMessage(QtWarningMsg, "BrowserTabBar::insertTab: a null tab record is ignored");
    QCOMPARE(bar->addTab(TabDataPtr()), -1);
    QTest::ignoreMessage(QtWarningMsg, "BrowserTabBar::insertTab: a null tab record is ignored");
    QCOMPARE(bar->insertTab(0, TabDataPtr()), -1);
    QCOMPARE(bar->count(), 2);
    QCOMPARE(bar->currentIndex(), -1);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

void TstBrowserTabBar::insertKeepsCurrentTab_data()
{
    QTest::addColumn<int>("at");
    QTest::addColumn<int>("expectedCurrent");
    QTest::newRow("before current") << 0 << 2;
    QTest::newRow("at current") << 1 << 2;
    QTest::newRow("after current") << 2 << 1;
    QTest::newRow("at the end") << 3 << 1;
}

void TstBrowserTabBar::insertKeepsCurrentTab()
{
    QFETCH(int, at);
    QFETCH(int, expectedCurrent);
    auto bar = MakeBar(800, 3);
    bar->setCurrentIndex(1);
    const TabDataPtr current = bar->GetCurrentTabData();
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    QCOMPARE(bar->insertTab(at, MakeTab(QStringLiteral("new"))), at);
    QCOMPARE(bar->currentIndex(), expectedCurrent);
    QCOMPARE(bar->GetCurrentTabData(), current);
    QVERIFY(OnlyCheckedIs(bar.get(), expectedCurrent));
    QCOMPARE(changed.count(), 0);
}

void TstBrowserTabBar::insertIndexIsClamped()
{
    auto bar = MakeBar(800, 2);
    QCOMPARE(bar->insertTab(9, MakeTab(QStringLiteral("end"))), 2);
    QCOMPARE(bar->insertTab(-4, MakeTab(QStringLiteral("start"))), 0);
    QCOMPARE(bar->GetAllTabTitles(),
             QStringList({QStringLiteral("start"), QStringLiteral("t0"), QStringLiteral("t1"), QStringLiteral("end")}));
}

void TstBrowserTabBar::setCurrentIndexSameEmitsNothing()
{
    auto bar = MakeBar(800, 3);
    bar->setCurrentIndex(2);
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    bar->setCurrentIndex(2);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(bar->currentIndex(), 2);
}

void TstBrowserTabBar::setCurrentIndexMinusOneUnchecksAll()
{
    auto bar = MakeBar(800, 3);
    bar->setCurrentIndex(1);
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    bar->setCurrentIndex(-1);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().toInt(), -1);
    QCOMPARE(bar->currentIndex(), -1);
    QVERIFY(OnlyCheckedIs(bar.get(), -1));
    QVERIFY(!bar->GetCurrentTabData());
}

void TstBrowserTabBar::setCurrentIndexBeyondCountDoesNothing()
{
    auto bar = MakeBar(800, 3);
    bar->setCurrentIndex(0);
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    bar->setCurrentIndex(3);
    bar->setCurrentIndex(100);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(bar->currentIndex(), 0);
    QVERIFY(OnlyCheckedIs(bar.get(), 0));
}

void TstBrowserTabBar::currentTabIsCheckedAndOnTop()
{
    auto bar = MakeBar(800, 4);
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    bar->setCurrentIndex(2);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().toInt(), 2);
    QVERIFY(OnlyCheckedIs(bar.get(), 2));
    QCOMPARE(ButtonAt(bar.get(), 2)->objectName(), QStringLiteral("TabButtonFront"));
    QCOMPARE(ButtonAt(bar.get(), 1)->objectName(), QStringLiteral("TabButtonBack"));
    // Its overlapping edges lie above both neighbours.
    const QObjectList siblings = Content(bar.get())->children();
    QCOMPARE(siblings.last(), ButtonAt(bar.get(), 2));
}

void TstBrowserTabBar::pressingATabMakesItCurrent()
{
    auto bar = MakeBar(800, 3);
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    ExpectPopupWarnings();
    QTest::mousePress(ButtonAt(bar.get(), 1), Qt::LeftButton);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(bar->currentIndex(), 1);
    QTest::mouseRelease(ActiveProxy(), Qt::LeftButton);
    QVERIFY(!ActiveProxy());
}

void TstBrowserTabBar::lookups()
{
    auto bar = MakeBar(800, 0);
    TabDataPtr a = MakeTab(QStringLiteral("Alpha"), TabData::TabTypePlugin, QStringLiteral("code-a"));
    TabDataPtr b = MakeTab(QStringLiteral("Beta"), TabData::TabTypeWeb, QStringLiteral("b"));
    bar->addTab(a);
    bar->addTab(b);
    // Same type and data, another id: the same tab.
    TabDataPtr twin = MakeTab(QStringLiteral("other title"), TabData::TabTypePlugin, QStringLiteral("code-a"));
    QCOMPARE(bar->GetIndexByTabData(twin), 0);
    QCOMPARE(bar->GetIndexByTabData(b), 1);
    QCOMPARE(bar->GetIndexByTabData(MakeTab(QStringLiteral("x"))), -1);
    QCOMPARE(bar->GetIndexByTabData(TabDataPtr()), -1);
    QCOMPARE(bar->GetIndexByTabId(b->GetId()), 1);
    QCOMPARE(bar->GetIndexByTabId(b->GetId().toUpper() + QStringLiteral("x")), -1);
    QCOMPARE(bar->GetIndexByName(QStringLiteral("Beta")), 1);
    QCOMPARE(bar->GetTabData(1), b);
    QVERIFY(!bar->GetTabData(2));
    QVERIFY(!bar->GetTabData(-1));
    QVERIFY(!bar->GetCurrentTabData());
    bar->setCurrentIndex(0);
    QCOMPARE(bar->GetCurrentTabData(), a);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({QStringLiteral("Alpha"), QStringLiteral("Beta")}));
}

void TstBrowserTabBar::getIndexByNameIsCaseSensitive()
{
    auto bar = MakeBar(800, 0);
    bar->addTab(MakeTab(QStringLiteral("ABC")));
    QCOMPARE(bar->GetIndexByName(QStringLiteral("abc")), -1);
    QCOMPARE(bar->GetIndexByName(QStringLiteral("ABC")), 0);
}

void TstBrowserTabBar::currentIconUrlAndPathNeedACurrentTab()
{
    auto bar = MakeBar(800, 2);
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(Qt::blue);
    const QString file = m_env->Path() + QStringLiteral("/fav.png");
    QVERIFY(image.save(file));
    bar->setTabIcon(1, file);
    QVERIFY(bar->CurrentIconUrl().isEmpty());
    QVERIFY(bar->CurrentIconLocalPath().isEmpty());
    bar->setCurrentIndex(1);
    QCOMPARE(bar->CurrentIconUrl(), file);
    QTRY_COMPARE(bar->CurrentIconLocalPath(), file);
    bar->setCurrentIndex(-1);
    QVERIFY(bar->CurrentIconUrl().isEmpty());
}

void TstBrowserTabBar::setTabIconEmptyLeavesIcon()
{
    auto bar = MakeBar(800, 1);
    bar->setTabIcon(0, QStringLiteral("unsupported://icons/a.ico"));
    bar->setTabIcon(0, QString());
    QCOMPARE(ButtonAt(bar.get(), 0)->GetRequestedIconUrl(), QStringLiteral("unsupported://icons/a.ico"));
}

void TstBrowserTabBar::forwardingIgnoresOutOfRange()
{
    auto bar = MakeBar(800, 2);
    bar->setTabText(-1, QStringLiteral("x"));
    bar->setTabText(2, QStringLiteral("x"));
    bar->setTabIcon(5, QStringLiteral("unsupported://icons/a.ico"));
    bar->LoadStart(-3);
    bar->LoadStart(2);
    bar->LoadFinished(9);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({QStringLiteral("t0"), QStringLiteral("t1")}));
    QVERIFY(!ButtonAt(bar.get(), 0)->IsLoading());
    QVERIFY(!ButtonAt(bar.get(), 1)->IsLoading());
}

void TstBrowserTabBar::forwardingReachesTheButton()
{
    auto bar = MakeBar(800, 2);
    bar->setTabText(1, QStringLiteral("renamed"));
    QCOMPARE(bar->GetTabData(1)->GetTitle(), QStringLiteral("renamed"));
    bar->setTabText(1, QString());
    QCOMPARE(bar->GetTabData(1)->GetTitle(), QStringLiteral("renamed"));
    bar->LoadStart(0);
    QVERIFY(ButtonAt(bar.get(), 0)->IsLoading());
    bar->LoadFinished(0);
    QVERIFY(!ButtonAt(bar.get(), 0)->IsLoading());
}

void TstBrowserTabBar::newTabButtonEmitsOnlyTheSignal()
{
    auto bar = MakeBar(800, 1);
    QSignalSpy added(bar.get(), &BrowserTabBar::SigAddNewTab);
    KelPushButtonHover *newTab = NewTabButton(bar.get());
    QCOMPARE(newTab->focusPolicy(), Qt::NoFocus);
    QCOMPARE(newTab->cursor().shape(), Qt::PointingHandCursor);
    QTest::mouseClick(newTab, Qt::LeftButton);
    QCOMPARE(added.count(), 1);
    QCOMPARE(bar->count(), 1);
}

void TstBrowserTabBar::tabManagerIsOnlyStored()
{
    auto bar = MakeBar(800, 0);
    QVERIFY(!bar->GetTabManager());
    CountingManager manager;
    bar->SetTabManager(&manager);
    QCOMPARE(bar->GetTabManager(), &manager);
    bar->addTab(MakeTab(QStringLiteral("a")));
    bar->addTab(MakeTab(QStringLiteral("b")));
    bar->setCurrentIndex(1);
    bar->removeTab(1);
    QCOMPARE(manager.calls, 0);
    bar->SetTabManager(nullptr);
    QVERIFY(!bar->GetTabManager());
}

void TstBrowserTabBar::buttonsLiveInTheStripAndNewOnesGoBelow()
{
    auto bar = MakeBar(800, 2);
    QFrame *content = Content(bar.get());
    QVERIFY(content);
    QCOMPARE(ButtonAt(bar.get(), 0)->parentWidget(), content);
    QCOMPARE(ButtonAt(bar.get(), 1)->parentWidget(), content);
    // Without a current tab, the newer tab lies below the older one.
    const QObjectList order = content->children();
    QVERIFY(order.indexOf(ButtonAt(bar.get(), 1)) < order.indexOf(ButtonAt(bar.get(), 0)));
}

// --- widths, placement and closing -----------------------------------------------

void TstBrowserTabBar::layoutRules_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("barWidth");
    QTest::addColumn<int>("tabs");
    QTest::addColumn<int>("fixedCount");
    QTest::addColumn<int>("fixedWidth");
    QTest::addColumn<int>("buttonWidth");
    QTest::addColumn<int>("extra");
    QTest::addColumn<int>("contentWidth");
    QTest::addColumn<int>("newTabX");

    // At 1.0 the new-tab button is 28 wide: 800 leaves 800 - 4 - 28 = 768 for the tabs.
    QTest::newRow("1 tab") << 1.0 << 800 << 1 << 0 << 0 << 164 << 0 << 162 << 166;
    QTest::newRow("4 tabs at the maximum") << 1.0 << 800 << 4 << 0 << 0 << 164 << 0 << 648 << 652;
    QTest::newRow("6 tabs share evenly") << 1.0 << 800 << 6 << 0 << 0 << 130 << 0 << 768 << 772;
    QTest::newRow("7 tabs, 5 pixels over") << 1.0 << 800 << 7 << 0 << 0 << 111 << 5 << 768 << 772;
    QTest::newRow("20 tabs, 13 fit") << 1.0 << 800 << 20 << 0 << 0 << 61 << 1 << 768 << 772;
    QTest::newRow("tiny bar") << 1.0 << 60 << 3 << 0 << 0 << 164 << 0 << 28 << 32;
    QTest::newRow("2 fixed + 3") << 1.0 << 800 << 5 << 2 << 200 << 164 << 0 << 686 << 690;
    QTest::newRow("2 fixed + 10") << 1.0 << 800 << 12 << 2 << 200 << 65 << 1 << 768 << 772;
    QTest::newRow("only fixed tabs") << 1.0 << 800 << 2 << 2 << 200 << 164 << 0 << 200 << 204;
    // At 1.5: spacing 3, margin 6, new-tab button 42, 1200 leaves 1152.
    QTest::newRow("1 tab at 1.5") << 1.5 << 1200 << 1 << 0 << 0 << 246 << 0 << 243 << 249;
    QTest::newRow("8 tabs at 1.5") << 1.5 << 1200 << 8 << 0 << 0 << 147 << 0 << 1152 << 1158;
    QTest::newRow("10 tabs at 1.5") << 1.5 << 1200 << 10 << 0 << 0 << 118 << 2 << 1152 << 1158;
    QTest::newRow("1 fixed + 3 at 1.5") << 1.5 << 1200 << 4 << 1 << 150 << 246 << 0 << 879 << 885;
    QTest::newRow("2 fixed + 12 at 1.5") << 1.5 << 1200 << 14 << 2 << 300 << 97 << 6 << 1152 << 1158;
}

void TstBrowserTabBar::layoutRules()
{
    QFETCH(double, scale);
    QFETCH(int, barWidth);
    QFETCH(int, tabs);
    QFETCH(int, fixedCount);
    QFETCH(int, fixedWidth);
    QFETCH(int, buttonWidth);
    QFETCH(int, extra);
    QFETCH(int, contentWidth);
    QFETCH(int, newTabX);
    DpiTool::SetScaleFactor(scale);
    auto bar = MakeBar(barWidth, tabs, fixedCount, fixedWidth);
    QCOMPARE(bar->height(), S(4) + S(32));

    QCOMPARE(bar->ButtonWidth(), buttonWidth);
    const auto buttons = Buttons(bar.get());
    QList<int> expectedWidths;
    for (int i = 0; i < tabs; ++i) {
        if (i < fixedCount)
            expectedWidths << (fixedWidth - S(2)) / fixedCount + S(2);
        else
            expectedWidths << buttonWidth + ((i - fixedCount) < extra ? 1 : 0);
        QCOMPARE(buttons.at(i)->height(), S(32));
        QCOMPARE(buttons.at(i)->y(), S(4));
    }
    QCOMPARE(Widths(bar.get()), expectedWidths);
    QCOMPARE(Xs(bar.get()), ExpectedXs(tabs, fixedCount, fixedWidth, buttonWidth, extra));
    // Neighbours overlap by the spacing (the one-pixel remainder aside).
    for (int i = fixedCount + 1; i < tabs; ++i)
        QVERIFY(buttons.at(i)->x() - (buttons.at(i - 1)->x() + buttons.at(i - 1)->width()) >= -S(2));

    QFrame *content = Content(bar.get());
    QCOMPARE(content->pos(), QPoint(0, 0));
    QCOMPARE(content->size(), QSize(contentWidth, bar->height()));
    KelPushButtonHover *newTab = NewTabButton(bar.get());
    QCOMPARE(newTab->size(), QSize(S(28), S(28)));
    QCOMPARE(newTab->pos(), QPoint(newTabX, S(4) + (S(32) - S(28)) / 2));
}

void TstBrowserTabBar::singleTabIsFollowedByNewTabButton()
{
    auto bar = MakeBar(800, 1);
    QCOMPARE(ButtonAt(bar.get(), 0)->width(), 164);
    QCOMPARE(NewTabButton(bar.get())->x(), Content(bar.get())->x() + 164 - 2 + 4);
}

void TstBrowserTabBar::squeezedTabsPutNewTabButtonAtRightEnd()
{
    auto bar = MakeBar(800, 4);
    QCOMPARE(bar->ButtonWidth(), 164);
    QCOMPARE(NewTabButton(bar.get())->x(), 4 * 162 + 4);
    bar->addTab(MakeTab(QStringLiteral("fifth")));
    QVERIFY(bar->ButtonWidth() < 164);
    QCOMPARE(NewTabButton(bar.get())->x(), 800 - NewTabButton(bar.get())->width());
}

void TstBrowserTabBar::tinyBarKeepsMaxWidth()
{
    auto bar = MakeBar(80, 3);
    QCOMPARE(bar->ButtonWidth(), bar->MaxButtonWidth());
    QCOMPARE(Widths(bar.get()), QList<int>({164, 164, 164}));
    QCOMPARE(Xs(bar.get()), QList<int>({0, 162, 324}));
    // 30 pixels for tabs beside the new-tab button and its margin.
    bar->resize(30 + 4 + 28, bar->height());
    QCOMPARE(bar->ButtonWidth(), 164);
}

void TstBrowserTabBar::closeButtonsFollowCommonWidthWithoutResize()
{
    // 292 leaves 260 for three tabs: 88 wide, two of them one pixel more (89, 89, 88).
    auto bar = MakeBar(292, 3);
    QCOMPARE(bar->ButtonWidth(), 88);
    QCOMPARE(Widths(bar.get()), QList<int>({89, 89, 88}));
    for (BrowserTabButton *button : Buttons(bar.get()))
        QVERIFY(CloseButtonOf(button)->isHidden());
    // 293: 89 each. The first two keep their size, yet the common width now shows
    // close buttons on every tab.
    bar->resize(293, bar->height());
    QCOMPARE(Widths(bar.get()), QList<int>({89, 89, 89}));
    for (BrowserTabButton *button : Buttons(bar.get()))
        QVERIFY(!CloseButtonOf(button)->isHidden());
    bar->resize(292, bar->height());
    for (BrowserTabButton *button : Buttons(bar.get()))
        QVERIFY(CloseButtonOf(button)->isHidden());
}

void TstBrowserTabBar::closeMiddleByMouseKeepsWidthsUntilLeave()
{
    auto bar = MakeBar(800, 10);
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    // 768 / 10: 78 wide, the first 8 one pixel more.
    QCOMPARE(bar->ButtonWidth(), 78);
    QHash<TabDataPtr, int> widthOf;
    for (int i = 0; i < bar->count(); ++i)
        widthOf.insert(bar->GetTabData(i), ButtonAt(bar.get(), i)->width());
    const TabDataPtr closed = bar->GetTabData(3);

    QCursor::setPos(ButtonAt(bar.get(), 3)->mapToGlobal(QPoint(40, 16)));
    QSignalSpy closeRequested(bar.get(), &BrowserTabBar::tabCloseRequested);
    ClickClose(bar.get(), 3);
    QCOMPARE(closeRequested.count(), 1);
    QCOMPARE(closeRequested.first().first().toInt(), 3);
    QCOMPARE(bar->count(), 9);
    QCOMPARE(bar->GetIndexByTabData(closed), -1);

    // Frozen: every tab keeps its width, the later ones slide left under the pointer.
    QCOMPARE(bar->ButtonWidth(), 78);
    for (int i = 0; i < bar->count(); ++i)
        QCOMPARE(ButtonAt(bar.get(), i)->width(), widthOf.value(bar->GetTabData(i)));
    QCOMPARE(Xs(bar.get()), ExpectedXs(9, 0, 0, 78, 8));
    QCOMPARE(Content(bar.get())->width(), 76 * 9 + 8);
    QCOMPARE(NewTabButton(bar.get())->x(), 76 * 9 + 8 + 4);

    // The pointer leaves: 200 ms later the tabs fit the bar again.
    QTimer *timer = RelayoutTimer(bar.get());
    LeaveBar(bar.get());
    QVERIFY(timer->isActive());
    QCOMPARE(bar->ButtonWidth(), 78);
    QTRY_COMPARE(bar->ButtonWidth(), 87);
    QCOMPARE(Widths(bar.get()), QList<int>({88, 88, 88, 87, 87, 87, 87, 87, 87}));
    QCOMPARE(NewTabButton(bar.get())->x(), 800 - 28);
}

void TstBrowserTabBar::leaveInsideTheBarStartsNoTimer()
{
    auto bar = MakeBar(800, 10);
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    QTimer *timer = RelayoutTimer(bar.get());
    // Without a close by mouse, leaving starts nothing.
    LeaveBar(bar.get());
    QVERIFY(!timer->isActive());
    ClickClose(bar.get(), 2);
    // Leaving a tab for the bar's empty part is no leaving of the bar.
    QCursor::setPos(bar->mapToGlobal(QPoint(10, 10)));
    SendEvent(bar.get(), QEvent::Leave);
    QVERIFY(!timer->isActive());
    QCOMPARE(bar->ButtonWidth(), 78);
}

void TstBrowserTabBar::closeLastByMouseFitsTheStripAtOnce()
{
    auto bar = MakeBar(800, 10);
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    ClickClose(bar.get(), 3);
    QCOMPARE(Content(bar.get())->width(), 692);
    // The last tab: the rest fit the strip as it is now (692), not the bar (768).
    ClickClose(bar.get(), 8);
    QCOMPARE(bar->count(), 8);
    QCOMPARE(bar->ButtonWidth(), 88);
    QCOMPARE(Widths(bar.get()), QList<int>({89, 89, 89, 89, 88, 88, 88, 88}));
    QCOMPARE(Xs(bar.get()), ExpectedXs(8, 0, 0, 88, 4));
    QCOMPARE(Content(bar.get())->width(), 692);
    QCOMPARE(NewTabButton(bar.get())->x(), 696);
    QVERIFY(!RelayoutTimer(bar.get())->isActive());
}

void TstBrowserTabBar::closeTypeChoosesNeighbour_data()
{
    QTest::addColumn<int>("closeType");
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("reported");
    QTest::addColumn<int>("finalCurrent");
    QTest::addColumn<QString>("finalTitle");
    QTest::newRow("prev, first") << 1 << 0 << -1 << -1 << QString();
    QTest::newRow("prev, middle") << 1 << 1 << 0 << 0 << "t0";
    QTest::newRow("prev, last") << 1 << 2 << 1 << 1 << "t1";
    QTest::newRow("next, first") << 0 << 0 << 1 << 0 << "t1";
    QTest::newRow("next, middle") << 0 << 1 << 2 << 1 << "t2";
    QTest::newRow("next, last") << 0 << 2 << 1 << 1 << "t1";
    QTest::newRow("other value, middle") << 7 << 1 << 2 << 1 << "t2";
}

void TstBrowserTabBar::closeTypeChoosesNeighbour()
{
    QFETCH(int, closeType);
    QFETCH(int, current);
    QFETCH(int, reported);
    QFETCH(int, finalCurrent);
    QFETCH(QString, finalTitle);
    auto bar = MakeBar(800, 3);
    bar->closeType = static_cast<CloseActiveType>(closeType);
    bar->setCurrentIndex(current);
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    bar->removeTab(current);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().toInt(), reported);
    QCOMPARE(bar->currentIndex(), finalCurrent);
    QCOMPARE(bar->GetCurrentTabData() ? bar->GetCurrentTabData()->GetTitle() : QString(), finalTitle);
    QVERIFY(OnlyCheckedIs(bar.get(), finalCurrent));
}

void TstBrowserTabBar::removeOutOfRangeIsIgnored()
{
    auto bar = MakeBar(800, 2);
    bar->removeTab(-1);
    bar->removeTab(2);
    QCOMPARE(bar->count(), 2);
}

void TstBrowserTabBar::removeBeforeCurrentKeepsCurrentTab()
{
    auto bar = MakeBar(800, 4);
    bar->setCurrentIndex(2);
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    bar->removeTab(0);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(bar->currentIndex(), 1);
    QCOMPARE(bar->GetCurrentTabData()->GetTitle(), QStringLiteral("t2"));
    bar->removeTab(3 - 1);
    QCOMPARE(bar->currentIndex(), 1);
    QVERIFY(OnlyCheckedIs(bar.get(), 1));
}

void TstBrowserTabBar::resizeFitsAgainAndEndsFrozenWidths()
{
    auto bar = MakeBar(800, 10);
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    ClickClose(bar.get(), 3);
    QCOMPARE(bar->ButtonWidth(), 78);
    bar->resize(801, bar->height());
    // 769 / 9 = 85, remainder 4.
    QCOMPARE(bar->ButtonWidth(), 87);
    QCOMPARE(Xs(bar.get()), ExpectedXs(9, 0, 0, 87, 4));
    QCOMPARE(NewTabButton(bar.get())->x(), 801 - 28);
}

void TstBrowserTabBar::relayoutTimerIsAChildSingleShot()
{
    auto bar = MakeBar(800, 1);
    QTimer *timer = RelayoutTimer(bar.get());
    QVERIFY(timer);
    QCOMPARE(timer->parent(), bar.get());
    QVERIFY(timer->isSingleShot());
    QCOMPARE(timer->interval(), 200);
    QVERIFY(!timer->isActive());
}

void TstBrowserTabBar::scaleChangeLaysOutAgain()
{
    auto bar = MakeBar(1200, 1);
    bar->setCurrentIndex(0);
    bar->grab();
    QCOMPARE(bar->ButtonWidth(), 164);
    const int before = bar->ButtonBgBuildCount();
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support propagateSizeHints()");
    DpiTool::SetScaleFactor(1.5);
    QCOMPARE(bar->ButtonWidth(), 246);
    QCOMPARE(ButtonAt(bar.get(), 0)->size(), QSize(246, 48));
    QCOMPARE(NewTabButton(bar.get())->size(), QSize(42, 42));
    QCOMPARE(bar->minimumHeight(), 54);
    bar->grab();
    // New backgrounds for the new height.
    QCOMPARE(bar->ButtonBgBuildCount() - before, 3);
    QCOMPARE(bar->GetButtonBg(246, true, false)->height(), 48);
}

// --- drag reordering ------------------------------------------------------------

void TstBrowserTabBar::pressWithoutMoveChangesNothing()
{
    auto bar = MakeBar(800, 3);
    const QStringList titles = bar->GetAllTabTitles();
    SlotDrag drag(bar.get(), 1);
    QVERIFY(ActiveProxy());
    QVERIFY(drag.Button()->IsPressed());
    drag.Release();
    QVERIFY(!ActiveProxy());
    QVERIFY(!drag.Button()->IsPressed());
    QCOMPARE(bar->GetAllTabTitles(), titles);
    QCOMPARE(bar->movedCalls, 0);
    QCOMPARE(Xs(bar.get()), QList<int>({0, 162, 324}));
    QVERIFY(!NewTabButton(bar.get())->isHidden());
    QCOMPARE(bar->currentIndex(), 1);
}

void TstBrowserTabBar::dragSecondOfThreeLeft_data()
{
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("expectedIndex");
    // Tabs at 0, 162, 324, each 164 wide; the first third of tab 0 ends at 54.
    QTest::newRow("past the first third") << 100 << 1;
    QTest::newRow("within the first third") << 40 << 1;
    QTest::newRow("one pixel from the start") << 1 << 1;
    QTest::newRow("at the start") << 0 << 0;
    QTest::newRow("beyond the start") << -40 << 0;
}

void TstBrowserTabBar::dragSecondOfThreeLeft()
{
    QFETCH(int, left);
    QFETCH(int, expectedIndex);
    auto bar = MakeBar(800, 3);
    const TabDataPtr dragged = bar->GetTabData(1);
    SlotDrag drag(bar.get(), 1);
    drag.MoveLeftEdgeTo(left);
    QCOMPARE(drag.Button()->x(), qMax(left, 0));
    QCOMPARE(bar->GetIndexByTabData(dragged), expectedIndex);
    QCOMPARE(bar->currentIndex(), expectedIndex);
    drag.Release();
    QCOMPARE(bar->GetIndexByTabData(dragged), expectedIndex);
    QCOMPARE(Xs(bar.get()), QList<int>({0, 162, 324}));
    QVERIFY(OnlyCheckedIs(bar.get(), expectedIndex));
}

void TstBrowserTabBar::dragRightToTheEndMovesToLast()
{
    auto bar = MakeBar(800, 3);
    const TabDataPtr dragged = bar->GetTabData(0);
    SlotDrag drag(bar.get(), 0);
    // Past both neighbours but short of the strip's end: no target.
    drag.MoveLeftEdgeTo(500);
    QCOMPARE(bar->GetIndexByTabData(dragged), 0);
    // The strip spans the whole bar during a drag; its end is 800.
    drag.MoveRightEdgeTo(900);
    QCOMPARE(drag.Button()->x(), 800 - 164);
    QCOMPARE(bar->GetIndexByTabData(dragged), 2);
    QCOMPARE(bar->currentIndex(), 2);
    drag.Release();
    QCOMPARE(bar->GetAllTabTitles(), QStringList({QStringLiteral("t1"), QStringLiteral("t2"), QStringLiteral("t0")}));
}

void TstBrowserTabBar::dragThresholds_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("expectedIndex");
    // Moving right, tab 0's right edge must reach two thirds of tab 1: 162 + 109 = 271.
    QTest::newRow("right edge short of two thirds") << 0 << 270 - 164 << 0;
    QTest::newRow("right edge at two thirds") << 0 << 271 - 164 << 1;
    // Moving left, tab 2's left edge must be within the first third of tab 1: 162 + 54 = 216.
    QTest::newRow("left edge beyond the first third") << 2 << 217 << 2;
    QTest::newRow("left edge at the first third") << 2 << 216 << 1;
    // Over both tab 0 and tab 1 (the shared strip): tab 0 decides first.
    QTest::newRow("left edge in the overlap") << 2 << 163 << 1;
}

void TstBrowserTabBar::dragThresholds()
{
    QFETCH(int, from);
    QFETCH(int, left);
    QFETCH(int, expectedIndex);
    auto bar = MakeBar(800, 3);
    const TabDataPtr dragged = bar->GetTabData(from);
    SlotDrag drag(bar.get(), from);
    drag.MoveLeftEdgeTo(left);
    QCOMPARE(bar->GetIndexByTabData(dragged), expectedIndex);
    drag.Release();
}

void TstBrowserTabBar::firstIndexOneProtectsIndexZero()
{
    auto bar = MakeBar(800, 3);
    bar->SetFirstIndex(1);
    QCOMPARE(bar->GetFirstIndex(), 1);
    const TabDataPtr first = bar->GetTabData(0);
    {
        SlotDrag drag(bar.get(), 0);
        drag.MoveRightEdgeTo(900);
        drag.MoveLeftEdgeTo(300);
        QCOMPARE(drag.Button()->x(), 0);
        QCOMPARE(bar->GetIndexByTabData(first), 0);
        drag.Release();
    }
    QCOMPARE(bar->movedCalls, 0);
    {
        SlotDrag drag(bar.get(), 2);
        drag.MoveLeftEdgeTo(40);
        QCOMPARE(bar->GetIndexByTabData(first), 0);
        QCOMPARE(bar->GetTabData(2)->GetTitle(), QStringLiteral("t2"));
        drag.MoveLeftEdgeTo(-50);
        QCOMPARE(bar->GetIndexByTabData(first), 0);
        QCOMPARE(bar->GetTabData(1)->GetTitle(), QStringLiteral("t2"));
        drag.Release();
    }
    QCOMPARE(bar->GetAllTabTitles(), QStringList({QStringLiteral("t0"), QStringLiteral("t2"), QStringLiteral("t1")}));
}

void TstBrowserTabBar::negativeFirstIndexActsAsZero()
{
    auto bar = MakeBar(800, 3);
    bar->SetFirstIndex(-3);
    SlotDrag drag(bar.get(), 2);
    drag.MoveLeftEdgeTo(0);
    QCOMPARE(bar->GetTabData(0)->GetTitle(), QStringLiteral("t2"));
    QCOMPARE(bar->currentIndex(), 0);
    drag.Release();
}

void TstBrowserTabBar::dragHidesNewTabButtonAndWidensStrip()
{
    auto bar = MakeBar(800, 3);
    KelPushButtonHover *newTab = NewTabButton(bar.get());
    SlotDrag drag(bar.get(), 1);
    QVERIFY(!newTab->isHidden());
    drag.MoveLeftEdgeTo(170);
    QVERIFY(newTab->isHidden());
    QCOMPARE(Content(bar.get())->width(), 800);
    // The held tab stays under the pointer when the others are laid out.
    bar->AdjustForDpi();
    QCOMPARE(drag.Button()->x(), 170);
    drag.Release();
    QVERIFY(!newTab->isHidden());
    QCOMPARE(Content(bar.get())->width(), 486);
    QCOMPARE(drag.Button()->x(), 162);
}

void TstBrowserTabBar::hideNewTabButtonSurvivesDrags()
{
    auto bar = MakeBar(800, 3);
    bar->HideNewTabButton();
    KelPushButtonHover *newTab = NewTabButton(bar.get());
    QVERIFY(newTab->isHidden());
    {
        SlotDrag drag(bar.get(), 1);
        drag.MoveLeftEdgeTo(200);
        drag.Release();
    }
    QVERIFY(newTab->isHidden());
    {
        SlotDrag drag(bar.get(), 1);
        drag.Release();
    }
    QVERIFY(newTab->isHidden());
}

void TstBrowserTabBar::tabButtonMovedFollowsEachHandledMove()
{
    auto bar = MakeBar(800, 3);
    SlotDrag drag(bar.get(), 1);
    drag.MoveLeftEdgeTo(150);
    drag.MoveLeftEdgeTo(140);
    drag.MoveLeftEdgeTo(140);
    QCOMPARE(bar->movedCalls, 3);
    drag.Release();
    QCOMPARE(bar->movedCalls, 3);
    // Without a held tab, a move is not handled.
    QMetaObject::invokeMethod(bar.get(), "SlotButtonMove");
    QCOMPARE(bar->movedCalls, 3);
}

void TstBrowserTabBar::pressedTabRemovedDuringDrag()
{
    auto bar = MakeBar(800, 4);
    SlotDrag drag(bar.get(), 1);
    drag.MoveLeftEdgeTo(250);
    QVERIFY(NewTabButton(bar.get())->isHidden());
    const int index = bar->GetIndexByTabData(drag.Button()->GetTabData());
    bar->removeTab(index);
    // The drag ended with its tab: the mouse is free and the strip is back to normal.
    QVERIFY(!ActiveProxy());
    QVERIFY(!NewTabButton(bar.get())->isHidden());
    QCOMPARE(bar->count(), 3);
    QCOMPARE(Xs(bar.get()), QList<int>({0, 162, 324}));
    QCOMPARE(Content(bar.get())->width(), 486);
    const int moved = bar->movedCalls;
    QMetaObject::invokeMethod(bar.get(), "SlotButtonMove");
    QMetaObject::invokeMethod(bar.get(), "SlotButtonRelease");
    QCOMPARE(bar->movedCalls, moved);
    FlushDeletes();
    // A new drag works as before.
    SlotDrag again(bar.get(), 2);
    again.MoveLeftEdgeTo(0);
    QCOMPARE(bar->GetTabData(0), again.Button()->GetTabData());
    again.Release();
}

// --- context menu ---------------------------------------------------------------

void TstBrowserTabBar::menuEnabling_data()
{
    QTest::addColumn<int>("tabs");
    QTest::addColumn<int>("index");
    QTest::addColumn<QVector<bool>>("enabled");
    // Positions: close tab, close right, close other, close left.
    QTest::newRow("3 tabs, first") << 3 << 0 << QVector<bool>({true, true, true, false});
    QTest::newRow("3 tabs, middle") << 3 << 1 << QVector<bool>({true, true, true, true});
    QTest::newRow("3 tabs, last") << 3 << 2 << QVector<bool>({true, false, true, true});
    QTest::newRow("1 tab") << 1 << 0 << QVector<bool>({true, false, false, false});
}

void TstBrowserTabBar::menuEnabling()
{
    QFETCH(int, tabs);
    QFETCH(int, index);
    QFETCH(QVector<bool>, enabled);
    auto bar = MakeBar(800, tabs);
    bar->InitMenu();
    const MenuRun run = RunMenu(bar.get(), index, -1);
    QVERIFY(run.shown);
    QCOMPARE(run.enabled, enabled);
    QVERIFY(!MenuOf(bar.get())->isVisible());
}

void TstBrowserTabBar::menuWithoutRecoveryHasFourActions()
{
    auto bar = MakeBar(800, 2);
    bar->InitMenu();
    QCOMPARE(bar->contextMenuPolicy(), Qt::CustomContextMenu);
    KelMenu *menu = MenuOf(bar.get());
    QVERIFY(menu);
    QCOMPARE(menu->parent(), bar.get());
    const auto actions = menu->actions();
    QCOMPARE(actions.size(), 4);
    QStringList texts;
    for (QAction *action : actions) {
        QVERIFY(!action->isSeparator());
        QCOMPARE(action->parent(), bar.get());
        texts << action->text();
    }
    QCOMPARE(texts, QStringList({QStringLiteral("Close tab"), QStringLiteral("Close right tabs"),
                                 QStringLiteral("Close other tabs"), QStringLiteral("Close left tabs")}));
}

void TstBrowserTabBar::recoveryItem_data()
{
    QTest::addColumn<bool>("recoveryEnabled");
    QTest::newRow("disabled by default") << false;
    QTest::newRow("enabled by the host") << true;
}

void TstBrowserTabBar::recoveryItem()
{
    QFETCH(bool, recoveryEnabled);
    auto bar = MakeBar(800, 3);
    bar->showRecovery = true;
    bar->recoveryEnabled = recoveryEnabled;
    bar->InitMenu();
    QSignalSpy recover(bar.get(), &BrowserTabBar::SigRecoverRecentlyTab);
    const MenuRun run = RunMenu(bar.get(), 1, 5);
    QCOMPARE(run.separator, QVector<bool>({false, false, false, false, true, false}));
    QCOMPARE(run.texts.at(5), QStringLiteral("Recover recently closed tabs"));
    QCOMPARE(run.enabled.at(5), recoveryEnabled);
    QCOMPARE(recover.count(), recoveryEnabled ? 1 : 0);
    QCOMPARE(bar->count(), 3);
}

void TstBrowserTabBar::menuCommandsEmitTheirSignals_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("signal");
    QTest::newRow("close tab") << 0 << "tabCloseRequested";
    QTest::newRow("close right") << 1 << "SigCloseRightTab";
    QTest::newRow("close other") << 2 << "SigCloseOtherTab";
    QTest::newRow("close left") << 3 << "SigCloseLeftTab";
}

void TstBrowserTabBar::menuCommandsEmitTheirSignals()
{
    QFETCH(int, position);
    QFETCH(QString, signal);
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    QSignalSpy closeRight(bar.get(), &BrowserTabBar::SigCloseRightTab);
    QSignalSpy closeOther(bar.get(), &BrowserTabBar::SigCloseOtherTab);
    QSignalSpy closeLeft(bar.get(), &BrowserTabBar::SigCloseLeftTab);
    const QHash<QString, QSignalSpy *> spies = {{QStringLiteral("tabCloseRequested"), &closeTab},
                                                {QStringLiteral("SigCloseRightTab"), &closeRight},
                                                {QStringLiteral("SigCloseOtherTab"), &closeOther},
                                                {QStringLiteral("SigCloseLeftTab"), &closeLeft}};
    RunMenu(bar.get(), 1, position);
    for (auto it = spies.cbegin(); it != spies.cend(); ++it) {
        QCOMPARE(it.value()->count(), it.key() == signal ? 1 : 0);
        if (it.key() == signal)
            QCOMPARE(it.value()->first().first().toInt(), 1);
    }
    QCOMPARE(bar->count(), 3);
}

void TstBrowserTabBar::closeLeftOnTab2OnlyEmits()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    QSignalSpy closeLeft(bar.get(), &BrowserTabBar::SigCloseLeftTab);
    RunMenu(bar.get(), 2, 3);
    QCOMPARE(closeLeft.count(), 1);
    QCOMPARE(closeLeft.first().first().toInt(), 2);
    QCOMPARE(bar->count(), 3);
}

void TstBrowserTabBar::disabledCommandDoesNothing()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    QSignalSpy closeLeft(bar.get(), &BrowserTabBar::SigCloseLeftTab);
    const MenuRun run = RunMenu(bar.get(), 0, 3);
    QVERIFY(!run.enabled.at(3));
    QCOMPARE(closeLeft.count(), 0);
}

void TstBrowserTabBar::unknownRecordOpensNoMenuAndKeepsMenuIndex()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    RunMenu(bar.get(), 1, -1);
    QSignalSpy shown(MenuOf(bar.get()), &QMenu::aboutToShow);
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotMenuClicked", Q_ARG(TabDataPtr, MakeTab(QStringLiteral("x")))));
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotMenuClicked", Q_ARG(TabDataPtr, TabDataPtr())));
    QCOMPARE(shown.count(), 0);
    // The menu's commands still name the tab whose menu was opened.
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotCloseCurTab"));
    QCOMPARE(closeTab.count(), 1);
    QCOMPARE(closeTab.first().first().toInt(), 1);
}

void TstBrowserTabBar::menuRequestBeforeInitMenuDoesNothing()
{
    auto bar = MakeBar(800, 2);
    QVERIFY(!MenuOf(bar.get()));
    const MenuRun run = RunMenu(bar.get(), 1, -1, false);
    QVERIFY(!run.shown);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(bar->count(), 2);
}

void TstBrowserTabBar::initMenuTwiceBuildsOnce()
{
    auto bar = MakeBar(800, 2);
    bar->InitMenu();
    bar->InitMenu();
    QCOMPARE(bar->findChildren<KelMenu *>().size(), 1);
    QCOMPARE(MenuOf(bar.get())->actions().size(), 4);
    QCOMPARE(bar->findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly).size(), 4);
}

void TstBrowserTabBar::menuClosingFitsTabsAgain()
{
    auto bar = MakeBar(800, 10);
    bar->InitMenu();
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    ClickClose(bar.get(), 3);
    QCOMPARE(bar->ButtonWidth(), 78);
    RunMenu(bar.get(), 0, -1);
    QCOMPARE(bar->ButtonWidth(), 87);
    QCOMPARE(NewTabButton(bar.get())->x(), 800 - 28);
}

void TstBrowserTabBar::tabsRemovedWhileMenuIsOpen()
{
    auto bar = MakeBar(800, 5);
    bar->InitMenu();
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    const TabDataPtr target = bar->GetTabData(3);
    RunMenu(bar.get(), 3, 0, true, [&bar] {
        bar->removeTab(0);
        bar->removeTab(0);
    });
    QCOMPARE(bar->count(), 3);
    // The command names the tab whose menu was opened, at its index now.
    QCOMPARE(closeTab.count(), 1);
    QCOMPARE(closeTab.first().first().toInt(), bar->GetIndexByTabData(target));
    QCOMPARE(bar->ButtonWidth(), 164);
    QCOMPARE(Xs(bar.get()), QList<int>({0, 162, 324}));
}

void TstBrowserTabBar::menuTabRemovedWhileMenuIsOpen()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    QSignalSpy closeOther(bar.get(), &BrowserTabBar::SigCloseOtherTab);
    RunMenu(bar.get(), 1, 2, true, [&bar] { bar->removeTab(1); });
    QCOMPARE(bar->count(), 2);
    // That tab is gone: the command has nothing to act on.
    QCOMPARE(closeOther.count(), 0);
}

void TstBrowserTabBar::barDeletedFromMenuCommand()
{
    QPointer<TestBar> bar = MakeBar(800, 3).release();
    bar->InitMenu();
    connect(bar.data(), &BrowserTabBar::tabCloseRequested, bar.data(), [&bar] { bar->deleteLater(); });
    RunMenu(bar.data(), 1, 0);
    FlushDeletes();
    QVERIFY(!bar);
}

void TstBrowserTabBar::secondMenuRequestWhileOpenIsIgnored()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    int shows = 0;
    connect(MenuOf(bar.get()), &QMenu::aboutToShow, this, [&shows] { ++shows; });
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    RunMenu(bar.get(), 0, 0, true, [&bar] {
        QMetaObject::invokeMethod(bar.get(), "SlotMenuClicked", Q_ARG(TabDataPtr, bar->GetTabData(2)));
    });
    QCOMPARE(shows, 1);
    QCOMPARE(closeTab.count(), 1);
    QCOMPARE(closeTab.first().first().toInt(), 0);
}

namespace {

/**
 * A bar inside a window, right-clicked through the window system path: Qt delivers
 * the press to the widget under the pointer and, after the press handler (which runs
 * the menu) has returned, sends that same widget a context-menu event.
 */
struct WindowedBar
{
    WindowedBar()
    {
        window.setGeometry(100, 100, 820, 60);
        bar = new TestBar(&window);
        bar->setGeometry(0, 0, 800, bar->minimumHeight());
        for (int i = 0; i < 3; ++i)
            bar->addTab(MakeTab(QStringLiteral("t%1").arg(i)));
        bar->InitMenu();
        window.show();
    }

    void RightClick(int index, int pick, const std::function<void()> &whileOpen = {})
    {
        QMenu *menu = MenuOf(bar);
        QObject::connect(menu, &QMenu::aboutToShow, menu, [menu, pick, whileOpen] {
            QMetaObject::invokeMethod(menu, [menu, pick, whileOpen] {
                if (whileOpen)
                    whileOpen();
                ClickMenuItem(menu, pick);
            }, Qt::QueuedConnection);
        });
        BrowserTabButton *button = ButtonAt(bar, index);
        const QPoint at = button->mapTo(&window, QPoint(20, 16));
        QCursor::setPos(window.mapToGlobal(at));
        ExpectPopupWarnings();
        QTest::mousePress(window.windowHandle(), Qt::RightButton, {}, at);
        QTest::mouseRelease(window.windowHandle(), Qt::RightButton, {}, at);
    }

    QWidget window;
    QPointer<TestBar> bar;
};

} // namespace

void TstBrowserTabBar::menuTabClosedByWindowRightClick()
{
    WindowedBar host;
    QPointer<BrowserTabButton> clicked = ButtonAt(host.bar, 1);
    // "Close tab": the host closes the tab at once, inside the menu's event loop.
    connect(host.bar.data(), &BrowserTabBar::tabCloseRequested, host.bar.data(), &BrowserTabBar::removeTab);
    host.RightClick(1, 0);
    QCOMPARE(host.bar->GetAllTabTitles(), QStringList({QStringLiteral("t0"), QStringLiteral("t2")}));
    QCOMPARE(Xs(host.bar), QList<int>({0, 162}));
    // The tab that took the press outlived it, hidden, and goes with the next deferred deletions.
    QVERIFY(!clicked || clicked->isHidden());
    FlushDeletes();
    QVERIFY(!clicked);
}

void TstBrowserTabBar::barDeletedByWindowRightClickCommand_data()
{
    QTest::addColumn<bool>("deferred");
    QTest::newRow("deleteLater") << true;
    QTest::newRow("delete") << false;
}

void TstBrowserTabBar::barDeletedByWindowRightClickCommand()
{
    QFETCH(bool, deferred);
    WindowedBar host;
    QPointer<BrowserTabButton> clicked = ButtonAt(host.bar, 2);
    connect(host.bar.data(), &BrowserTabBar::SigCloseLeftTab, &host.window, [&host, deferred] {
        if (deferred)
            host.bar->deleteLater();
        else
            delete host.bar.data();
    }, Qt::DirectConnection);
    host.RightClick(2, 3, [&host, deferred] {
        // Deleted from inside the menu's loop, as a host's command would.
        Q_UNUSED(host)
        Q_UNUSED(deferred)
    });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!host.bar);
    FlushDeletes();
    QVERIFY(!clicked);
    QVERIFY(!QApplication::activePopupWidget());
}

// --- hostile call orders --------------------------------------------------------

void TstBrowserTabBar::removeInsideCurrentChangedDuringRemove()
{
    auto bar = MakeBar(800, 4);
    bar->setCurrentIndex(1);
    const TabDataPtr last = bar->GetTabData(3);
    bool once = true;
    // The host answers the new current tab (index 2) by closing it too.
    connect(bar.get(), &BrowserTabBar::currentChanged, this, [&bar, &once](int index) {
        if (once && index == 2) {
            once = false;
            bar->removeTab(2);
        }
    });
    bar->removeTab(1);
    QCOMPARE(bar->count(), 2);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({QStringLiteral("t0"), QStringLiteral("t3")}));
    QCOMPARE(bar->GetCurrentTabData(), last);
    QVERIFY(OnlyCheckedIs(bar.get(), bar->currentIndex()));
    QCOMPARE(Xs(bar.get()), QList<int>({0, 162}));
}

void TstBrowserTabBar::removeInsideTabCloseRequested()
{
    auto bar = MakeBar(800, 4);
    bar->setCurrentIndex(3);
    // The host closes every tab it is asked about, and one more.
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), [&bar](int index) {
        bar->removeTab(index);
        bar->removeTab(0);
    });
    ClickClose(bar.get(), 3);
    QCOMPARE(bar->count(), 2);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({QStringLiteral("t1"), QStringLiteral("t2")}));
    QCOMPARE(bar->currentIndex(), 1);
    QVERIFY(OnlyCheckedIs(bar.get(), 1));
    FlushDeletes();
    QCOMPARE(Buttons(bar.get()).size(), 2);
}

void TstBrowserTabBar::insertInsideCurrentChanged()
{
    auto bar = MakeBar(800, 3);
    bar->setCurrentIndex(2);
    bool once = true;
    connect(bar.get(), &BrowserTabBar::currentChanged, this, [&bar, &once] {
        if (once) {
            once = false;
            bar->insertTab(0, MakeTab(QStringLiteral("inserted")));
        }
    });
    bar->removeTab(2);
    QCOMPARE(bar->GetAllTabTitles(),
             QStringList({QStringLiteral("inserted"), QStringLiteral("t0"), QStringLiteral("t1")}));
    QCOMPARE(bar->GetCurrentTabData()->GetTitle(), QStringLiteral("t1"));
    QVERIFY(OnlyCheckedIs(bar.get(), bar->currentIndex()));
}

void TstBrowserTabBar::currentSetBackToClosingTab()
{
    auto bar = MakeBar(800, 3);
    bar->setCurrentIndex(1);
    bool once = true;
    connect(bar.get(), &BrowserTabBar::currentChanged, this, [&bar, &once] {
        if (once) {
            once = false;
            bar->setCurrentIndex(1);
        }
    });
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    bar->removeTab(1);
    QCOMPARE(bar->count(), 2);
    // The tab made current again is gone: no tab is current, and the host hears so.
    QCOMPARE(bar->currentIndex(), -1);
    QCOMPARE(changed.last().first().toInt(), -1);
    QVERIFY(OnlyCheckedIs(bar.get(), -1));
}

void TstBrowserTabBar::nullRecordsAreHarmless()
{
    auto bar = MakeBar(800, 2);
    bar->InitMenu();
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotChangeClicked", Q_ARG(TabDataPtr, TabDataPtr())));
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotCloseClicked", Q_ARG(TabDataPtr, TabDataPtr())));
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotMenuClicked", Q_ARG(TabDataPtr, TabDataPtr())));
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotButtonPressed"));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(closeTab.count(), 0);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(bar->GetIndexByTabData(TabDataPtr()), -1);
}

void TstBrowserTabBar::removedButtonCannotReachTheBar()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    BrowserTabButton *removed = ButtonAt(bar.get(), 1);
    const TabDataPtr tab = removed->GetTabData();
    bar->removeTab(1);
    QVERIFY(removed->isHidden());
    // A twin record in the list would match; the removed button's signals must not.
    bar->addTab(MakeTab(QStringLiteral("twin"), tab->GetTabType(), tab->GetData()));
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    Q_EMIT removed->SigChangeClicked(tab);
    Q_EMIT removed->SigCloseClicked(tab);
    Q_EMIT removed->SigMenuClicked(tab);
    Q_EMIT removed->SigButtonPressed();
    QCOMPARE(changed.count(), 0);
    QCOMPARE(closeTab.count(), 0);
    QVERIFY(!QApplication::activePopupWidget());
}

void TstBrowserTabBar::barDeletedWithRelayoutTimerLive()
{
    auto bar = MakeBar(800, 10);
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    ClickClose(bar.get(), 3);
    LeaveBar(bar.get());
    QVERIFY(RelayoutTimer(bar.get())->isActive());
    bar.reset();
    QTest::qWait(260);
}

void TstBrowserTabBar::barDeletedWithProxyShown()
{
    auto bar = MakeBar(800, 3);
    SlotDrag drag(bar.get(), 1);
    drag.MoveLeftEdgeTo(200);
    QVERIFY(ActiveProxy());
    bar.reset();
    QVERIFY(!QApplication::activePopupWidget());
    QVERIFY(QApplication::topLevelWidgets().isEmpty() || !ActiveProxy());
}

void TstBrowserTabBar::barDeletedWithButtonsUnderThePointer()
{
    auto bar = MakeBar(800, 3);
    BrowserTabButton *button = ButtonAt(bar.get(), 1);
    QCursor::setPos(button->mapToGlobal(button->rect().center()));
    SendEvent(button, QEvent::Enter);
    bar->removeTab(0);
    bar.reset();
}

// --- look -----------------------------------------------------------------------

void TstBrowserTabBar::renderLook_data()
{
    QTest::addColumn<int>("tabs");
    QTest::addColumn<double>("scale");
    QTest::newRow("1 tab") << 1 << 1.0;
    QTest::newRow("5 tabs") << 5 << 1.0;
    QTest::newRow("20 tabs") << 20 << 1.0;
    QTest::newRow("5 tabs at 1.5") << 5 << 1.5;
}

void TstBrowserTabBar::renderLook()
{
    QFETCH(int, tabs);
    QFETCH(double, scale);
    DpiTool::SetScaleFactor(scale);
    // A window as a host would have it: the tab strip over a white page.
    QWidget window;
    KelTabStyle::ApplyDefaultStyleSheet(&window);
    window.setStyleSheet(window.styleSheet() + QStringLiteral("QWidget#page { background: white; }"));
    TestBar bar(&window);
    bar.InitMenu();
    window.resize(S(900), bar.minimumHeight() + S(24));
    bar.setGeometry(0, 0, window.width(), bar.minimumHeight());
    QWidget page(&window);
    page.setObjectName(QStringLiteral("page"));
    page.setGeometry(0, bar.minimumHeight(), window.width(), S(24));
    const QStringList titles = {QStringLiteral("Example Domain"), QStringLiteral("Qt Documentation"),
                                QStringLiteral("KDE Community"), QStringLiteral("A rather long title that will not fit"),
                                QStringLiteral("News")};
    for (int i = 0; i < tabs; ++i)
        bar.addTab(MakeTab(titles.at(i % titles.size())));
    bar.addTab(MakeTab(QStringLiteral("Home"), TabData::TabTypeHomePage));
    bar.setCurrentIndex(qMin(1, tabs - 1));
    if (tabs > 2)
        bar.LoadStart(2);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    if (tabs > 3)
        SendEvent(ButtonAt(&bar, 3), QEvent::Enter);  // hovered, as under the pointer

    const QImage image = window.grab().toImage();
    const QString file = QStringLiteral("classic_%1_tabs_x%2.png").arg(tabs).arg(scale * 10);
    QVERIFY(image.save(QDir::current().filePath(file)));

    // The current tab is white down into the page; the strip around it is the frame's grey.
    BrowserTabButton *current = ButtonAt(&bar, bar.currentIndex());
    const QPoint inside = current->mapTo(&window, QPoint(current->width() / 2, current->height() - 1));
    QCOMPARE(image.pixelColor(inside).name(), QStringLiteral("#ffffff"));
    const QPoint above = current->mapTo(&window, QPoint(current->width() / 2, -S(2)));
    QCOMPARE(image.pixelColor(above).name(), QStringLiteral("#dee1e6"));
    // A plain tab lets the frame show through.
    BrowserTabButton *plain = ButtonAt(&bar, 0 == bar.currentIndex() ? 1 : 0);
    if (plain) {
        const QPoint middle = plain->mapTo(&window, QPoint(S(8), S(3)));
        QCOMPARE(image.pixelColor(middle).name(), QStringLiteral("#dee1e6"));
    }
}

// --- randomized model -----------------------------------------------------------

namespace {

/**
 * The reference: the tab list, the current index and the layout state the bar must
 * reach after each operation, computed on its own from the rules.
 */
class Model
{
public:
    QList<TabDataPtr> tabs;
    int current = -1;
    bool frozen = false;      // closed by mouse since the last full fit
    bool frozenLast = false;
    bool timerPending = false;
    int buttonWidth = 0;
    int extra = 0;
    int contentWidth = 0;
    int barWidth = 0;
    int fixedCount = 0;
    int fixedWidth = 0;
    int newTabWidth = 0;
    CloseActiveType closeType = CloseActiveNext;

    QHash<const TabData *, int> widthOf;  // every button's expected width

    int Count() const { return tabs.size(); }

    // Widths are handed out on every fit; otherwise each tab keeps its own.
    void AssignWidths()
    {
        for (int i = 0; i < tabs.size(); ++i) {
            int width;
            if (i < fixedCount)
                width = (fixedWidth - S(2)) / fixedCount + S(2);
            else
                width = buttonWidth + ((i - fixedCount) < extra ? 1 : 0);
            widthOf.insert(tabs.at(i).data(), width);
        }
    }

    void Compute(int available)
    {
        const int n = tabs.size();
        int fit = (available - fixedWidth) / (S(60) - S(2));
        fit = qMin(fit, n - fixedCount);
        buttonWidth = S(164);
        if (fit > 0)
            buttonWidth = qMin((available - fixedWidth) / fit + S(2), S(164));
        extra = 0;
        if (buttonWidth != S(164))
            extra = qMax(0, available - (buttonWidth - S(2)) * fit - fixedWidth);
    }

    void UpdateContent()
    {
        if (tabs.isEmpty())
            return;  // the bar only places what it has
        const int n = tabs.size();
        int width = fixedWidth;
        if (n > fixedCount)
            width += (buttonWidth - S(2)) * (n - fixedCount) + extra;
        contentWidth = qMax(0, qMin(width, barWidth - S(4) - newTabWidth));
    }

    void FullFit()
    {
        frozen = false;
        frozenLast = false;
        if (tabs.isEmpty())
            return;
        Compute(barWidth - S(4) - newTabWidth);
        AssignWidths();
        UpdateContent();
    }

    void Add(const TabDataPtr &tab)
    {
        tabs.append(tab);
        FullFit();
    }

    void Insert(int index, const TabDataPtr &tab)
    {
        index = qBound(0, index, tabs.size());
        tabs.insert(index, tab);
        if (index <= current)
            ++current;
        FullFit();
    }

    void SetCurrent(int index)
    {
        if (index >= tabs.size())
            return;
        current = qMax(index, -1);
    }

    int X(int index) const
    {
        return ExpectedXs(tabs.size(), fixedCount, fixedWidth, buttonWidth, extra).at(index);
    }

    int W(int index) const { return widthOf.value(tabs.at(index).data()); }

    /**
     * Where the held tab at @p held goes when its left edge is at @p left, by the
     * reordering rule; -1 for nowhere. The strip spans the whole bar while dragging.
     */
    int DragTarget(int held, int left, int firstIndex) const
    {
        const int n = tabs.size();
        const int lowest = qMax(0, firstIndex);
        const int right = left + W(held);
        if (left <= 0)
            return lowest >= held ? -1 : lowest;
        if (right >= barWidth)
            return held == n - 1 ? -1 : n - 1;
        for (int j = lowest; j < held; ++j) {
            if (X(j) <= left && left <= X(j) + W(j)) {
                int target = j + (left > X(j) + W(j) / 3 ? 1 : 0);
                target = qMin(target, n - 1);
                return (target == held || target == 0) ? -1 : target;
            }
        }
        for (int j = held + 1; j < n; ++j) {
            if (X(j) <= right && right <= X(j) + W(j)) {
                int target = j - (right < X(j) + (2 * W(j)) / 3 ? 1 : 0);
                target = qMax(target, 0);
                return (target == held || target == 0) ? -1 : target;
            }
        }
        return -1;
    }

    /** The held tab's left edge follows the pointer, kept inside the bar. */
    int HeldX(int held, int wanted) const { return qMin(qMax(wanted, 0), barWidth - W(held)); }

    void Remove(int index)
    {
        if (index < 0 || index >= tabs.size())
            return;
        if (index == current) {
            if (closeType == CloseActivePrev)
                current = index - 1;
            else
                current = index + 1 < tabs.size() ? index + 1 : index - 1;
        }
        tabs.removeAt(index);
        if (index < current)
            --current;
        if (frozen) {
            if (frozenLast) {
                Compute(contentWidth);
                AssignWidths();
            }
            UpdateContent();
        } else {
            FullFit();
        }
    }
};

} // namespace

void TstBrowserTabBar::randomizedModel_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("fixedCount");
    QTest::addColumn<int>("fixedWidth");
    QTest::addColumn<int>("firstIndex");
    QTest::addColumn<int>("closeType");
    QTest::newRow("plain") << 1.0 << 0 << 0 << 0 << 0;
    QTest::newRow("fixed tabs, previous neighbour") << 1.0 << 2 << 180 << 2 << 1;
    QTest::newRow("at 1.5") << 1.5 << 0 << 0 << 1 << 0;
}

void TstBrowserTabBar::randomizedModel()
{
    QFETCH(double, scale);
    QFETCH(int, fixedCount);
    QFETCH(int, fixedWidth);
    QFETCH(int, firstIndex);
    QFETCH(int, closeType);

    bool seedOk = false;
    quint32 seed = qEnvironmentVariable("KELTAB_SEED").toUInt(&seedOk);
    if (!seedOk)
        seed = QRandomGenerator::global()->generate();
    int operations = qEnvironmentVariableIntValue("KELTAB_MODEL_OPERATIONS");
    if (operations <= 0) {
#ifdef __SANITIZE_ADDRESS__
        // Three rows of 7,000 still make more than 20,000 a run, in a fraction of
        // the time that instrumented allocations take.
        operations = 7000;
#else
        operations = 20000;
#endif
    }
    // Printed on failure only, so that a failing run can be repeated with KELTAB_SEED.
    struct SeedReport
    {
        quint32 seed;
        int step = 0;
        ~SeedReport()
        {
            if (QTest::currentTestFailed())
                qInfo("randomizedModel: KELTAB_SEED=%u reproduces this run (failed at step %d)", seed, step);
        }
    } report{seed};

    DpiTool::SetScaleFactor(scale);
    QRandomGenerator rng(seed);
    Model model;
    model.fixedCount = fixedCount;
    model.fixedWidth = fixedWidth;
    model.closeType = static_cast<CloseActiveType>(closeType);

    TestBar bar;
    bar.fixedCount = fixedCount;
    bar.fixedWidth = fixedWidth;
    bar.closeType = model.closeType;
    bar.SetFirstIndex(firstIndex);
    bar.InitMenu();
    model.barWidth = S(700);
    bar.setGeometry(100, 100, model.barWidth, bar.minimumHeight());
    bar.show();
    model.newTabWidth = NewTabButton(&bar)->width();
    QTimer *timer = RelayoutTimer(&bar);
    QMenu *menu = MenuOf(&bar);

    // The host: removes what it is asked to, most of the time, keeping the model in step.
    bool hostAccepts = true;
    auto hostRemove = [&bar, &model](int index) {
        model.Remove(index);
        bar.removeTab(index);
    };
    connect(&bar, &BrowserTabBar::tabCloseRequested, this, [&](int index) {
        if (hostAccepts)
            hostRemove(index);
    });
    connect(&bar, &BrowserTabBar::SigCloseOtherTab, this, [&](int index) {
        for (int i = bar.count() - 1; i >= 0; --i) {
            if (i != index)
                hostRemove(i);
        }
    });
    connect(&bar, &BrowserTabBar::SigCloseRightTab, this, [&](int index) {
        while (index >= 0 && bar.count() > index + 1)
            hostRemove(bar.count() - 1);
    });
    connect(&bar, &BrowserTabBar::SigCloseLeftTab, this, [&](int index) {
        for (int i = index - 1; i >= 0; --i)
            hostRemove(i);
    });

    // The user only reaches tabs that show: those that start inside the strip.
    auto pickVisible = [&bar, &rng]() -> int {
        QList<int> visible;
        const auto buttons = Buttons(&bar);
        for (int i = 0; i < buttons.size(); ++i) {
            if (buttons.at(i)->x() + S(12) < qMin(Content(&bar)->width(), bar.width()))
                visible << i;
        }
        return visible.isEmpty() ? -1 : visible.at(int(rng.bounded(visible.size())));
    };
    // A point of the tab that lies inside the bar.
    auto pointOn = [&bar](int index) {
        BrowserTabButton *button = ButtonAt(&bar, index);
        const int right = qMin(button->width(), bar.width() - button->x()) - 1;
        return QPoint(qMin(S(10), right), button->height() / 2);
    };

    int serial = 0;
    auto newTab = [&serial] { return MakeTab(QStringLiteral("tab %1").arg(++serial)); };

    QStringList history;  // the last operations, for the failure message
    auto check = [&](const char *operation) -> bool {
        const auto fail = [&](const QString &what) {
            const QString message = QStringLiteral("%1 at step %2 after %3 (KELTAB_SEED=%4; before: %5)")
                                        .arg(what).arg(report.step).arg(QLatin1String(operation)).arg(seed)
                                        .arg(history.join(QStringLiteral(", ")));
            QTest::qFail(message.toUtf8().constData(), __FILE__, __LINE__);
            return false;
        };
        if (bar.count() != model.Count())
            return fail(QStringLiteral("count %1 != %2").arg(bar.count()).arg(model.Count()));
        if (timer->isActive() != model.timerPending)
            return fail(QStringLiteral("relayout timer %1").arg(timer->isActive() ? "running" : "stopped"));
        for (int i = 0; i < model.Count(); ++i) {
            if (bar.GetTabData(i) != model.tabs.at(i))
                return fail(QStringLiteral("tab %1 differs").arg(i));
        }
        if (bar.currentIndex() != model.current)
            return fail(QStringLiteral("current %1 != %2").arg(bar.currentIndex()).arg(model.current));
        const auto buttons = Buttons(&bar);
        for (int i = 0; i < buttons.size(); ++i) {
            if (!buttons.at(i))
                return fail(QStringLiteral("no button for tab %1").arg(i));
            if (buttons.at(i)->IsChecked() != (i == model.current))
                return fail(QStringLiteral("checked state of tab %1").arg(i));
            if (buttons.at(i)->IsPressed())
                return fail(QStringLiteral("tab %1 still held").arg(i));
        }
        if (model.Count() == 0)
            return true;
        if (bar.ButtonWidth() != model.buttonWidth)
            return fail(QStringLiteral("button width %1 != %2").arg(bar.ButtonWidth()).arg(model.buttonWidth));
        // Left to right by the placement rule.
        const QList<int> xs = ExpectedXs(model.Count(), fixedCount, fixedWidth, model.buttonWidth, model.extra);
        for (int i = 0; i < buttons.size(); ++i) {
            if (buttons.at(i)->pos() != QPoint(xs.at(i), S(4)) || buttons.at(i)->height() != S(32))
                return fail(QStringLiteral("tab %1 at (%2, %3), expected x %4")
                                .arg(i).arg(buttons.at(i)->x()).arg(buttons.at(i)->y()).arg(xs.at(i)));
        }
        for (int i = 0; i < buttons.size(); ++i) {
            const int expected = model.widthOf.value(model.tabs.at(i).data());
            if (buttons.at(i)->width() != expected)
                return fail(QStringLiteral("tab %1 is %2 wide, expected %3").arg(i).arg(buttons.at(i)->width()).arg(expected));
        }
        if (Content(&bar)->width() != model.contentWidth)
            return fail(QStringLiteral("strip width %1 != %2").arg(Content(&bar)->width()).arg(model.contentWidth));
        KelPushButtonHover *plus = NewTabButton(&bar);
        const int plusX = (model.buttonWidth != S(164) && !model.frozen) ? model.barWidth - plus->width()
                                                                        : model.contentWidth + S(4);
        if (plus->pos() != QPoint(plusX, S(4) + (S(32) - plus->height()) / 2) || plus->isHidden())
            return fail(QStringLiteral("new-tab button at x %1, expected %2").arg(plus->x()).arg(plusX));
        return true;
    };

    for (report.step = 0; report.step < operations; ++report.step) {
        const int n = model.Count();
        const int roll = int(rng.bounded(100));
        const char *operation = "";
        if (roll < 14 && n < 30) {
            operation = "addTab";
            const TabDataPtr tab = newTab();
            model.Add(tab);
            bar.addTab(tab);
        } else if (roll < 24 && n < 30) {
            operation = "insertTab";
            const int index = int(rng.bounded(n + 3)) - 1;
            const TabDataPtr tab = newTab();
            model.Insert(index, tab);
            bar.insertTab(index, tab);
        } else if (roll < 34) {
            operation = "removeTab";
            const int index = int(rng.bounded(n + 2)) - 1;
            model.Remove(index);
            bar.removeTab(index);
        } else if (roll < 46) {
            operation = "setCurrentIndex";
            const int index = int(rng.bounded(n + 2)) - 1;
            if (index != model.current && index < n)
                model.SetCurrent(index);
            bar.setCurrentIndex(index);
        } else if (roll < 62 && n > 0 && pickVisible() >= 0) {
            operation = "close click";
            const int index = pickVisible();
            hostAccepts = rng.bounded(10) != 0;
            model.frozen = true;
            model.frozenLast = index == n - 1;
            model.timerPending = false;
            QCursor::setPos(ButtonAt(&bar, index)->mapToGlobal(pointOn(index)));
            ClickClose(&bar, index);
            hostAccepts = true;
        } else if (roll < 70) {
            operation = "leave";
            const bool outside = rng.bounded(3) != 0;
            if (outside) {
                LeaveBar(&bar);
                if (model.frozen)
                    model.timerPending = true;
            } else {
                QCursor::setPos(bar.mapToGlobal(QPoint(2, 2)));
                SendEvent(&bar, QEvent::Leave);
            }
        } else if (roll < 76) {
            operation = "timer expiry";
            if (timer->isActive() != model.timerPending) {
                QTest::qFail(QStringLiteral("relayout timer %4 at step %1 (KELTAB_SEED=%2; before: %3)")
                                 .arg(report.step).arg(seed).arg(history.join(QStringLiteral(", ")))
                                 .arg(timer->isActive() ? QStringLiteral("running unexpectedly") : QStringLiteral("not running"))
                                 .toUtf8().constData(), __FILE__, __LINE__);
                return;
            }
            if (model.timerPending) {
                timer->start(0);
                while (timer->isActive())
                    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
                model.timerPending = false;
                model.FullFit();
            }
        } else if (roll < 86 && n > 0 && pickVisible() >= 0) {
            operation = "drag";
            const int index = pickVisible();
            const TabDataPtr dragged = model.tabs.at(index);
            model.SetCurrent(index);
            int held = index;
            {
                SlotDrag drag(&bar, index, pointOn(index));
                const int moves = int(rng.bounded(5));
                for (int m = 0; m < moves; ++m) {
                    const int wanted = int(rng.bounded(model.barWidth + 200)) - 100;
                    drag.MoveLeftEdgeTo(wanted);
                    // Tabs before firstIndex do not follow the pointer at all.
                    if (held < qMax(0, firstIndex))
                        continue;
                    const int target = model.DragTarget(held, model.HeldX(held, wanted), firstIndex);
                    if (target >= 0) {
                        model.tabs.move(held, target);
                        held = target;
                        model.current = held;
                    }
                    if (drag.Button()->x() != model.HeldX(held, wanted)) {
                        QTest::qFail(QStringLiteral("held tab at x %1, expected %2 (KELTAB_SEED=%3, step %4)")
                                         .arg(drag.Button()->x()).arg(model.HeldX(held, wanted)).arg(seed).arg(report.step)
                                         .toUtf8().constData(), __FILE__, __LINE__);
                        return;
                    }
                }
                drag.Release();
            }
            QCOMPARE(bar.GetIndexByTabData(dragged), held);
            // A drag released outside the bar has taken the pointer out of it: after
            // closing by mouse, that starts the re-fit like any other leave.
            const bool outside = !bar.rect().contains(bar.mapFromGlobal(QCursor::pos()));
            if (model.frozen && outside && timer->isActive())
                model.timerPending = true;
        } else if (roll < 92) {
            operation = "resize";
            const int width = S(150) + int(rng.bounded(S(1100)));
            if (width != model.barWidth) {
                model.barWidth = width;
                bar.resize(model.barWidth, bar.height());
                model.FullFit();
            }
        } else if (roll < 96 && n > 0 && pickVisible() >= 0) {
            operation = "menu";
            const int index = pickVisible();
            const int pick = int(rng.bounded(5)) - 1;
            // The user right-clicks the tab: the pointer is on it.
            QCursor::setPos(ButtonAt(&bar, index)->mapToGlobal(pointOn(index)));
            RunMenu(&bar, index, pick);
            // Closing the menu fits the tabs again. A re-fit that fell due while the
            // menu's event loop ran (200 ms after an earlier leave) has already
            // happened: its effect is the same fit.
            model.FullFit();
            if (model.timerPending && !timer->isActive())
                model.timerPending = false;
        } else if (n > 0) {
            operation = "hover";
            BrowserTabButton *button = ButtonAt(&bar, int(rng.bounded(n)));
            SendEvent(button, rng.bounded(2) ? QEvent::Enter : QEvent::Leave);
        }
        if (!check(operation))
            return;
        history.append(QLatin1String(operation));
        if (history.size() > 12)
            history.removeFirst();
        if (report.step % 64 == 0)
            FlushDeletes();
    }
    Q_UNUSED(menu)
}

KELTAB_TEST_MAIN(TstBrowserTabBar)
#include "tst_browsertabbar.moc"
