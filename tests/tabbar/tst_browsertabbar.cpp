// SPDX-License-Identifier: MIT
// The classic tab strip: its tabs, lookups, current tab and look.

#include "keltabtest.h"
#include "classicbartest.h"

#include <QRandomGenerator>

using namespace ClassicTest;

class TstBrowserTabBar : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

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
    void eachSwitchLeavesTheTabsStackedInOrder();
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

    // look
    void renderLook_data();
    void renderLook();
    void mirroredTabsPaintTheMirroredBackground_data();
    void mirroredTabsPaintTheMirroredBackground();

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

// After every switch, whatever came before it (tabs inserted below the others, moved,
// removed, dragged): the current tab on top, and each other tab on its right neighbour.
void TstBrowserTabBar::eachSwitchLeavesTheTabsStackedInOrder()
{
    auto bar = MakeBar(800, 8);
    const auto checkStack = [&bar]() -> QString {
        QList<QObject *> expected;
        for (int i = bar->count() - 1; i >= 0; --i) {
            if (i != bar->currentIndex())
                expected << ButtonAt(bar.get(), i);
        }
        if (bar->currentIndex() >= 0)
            expected << ButtonAt(bar.get(), bar->currentIndex());
        QList<QObject *> stack;
        for (QObject *child : Content(bar.get())->children()) {
            if (expected.contains(child))
                stack << child;
        }
        return stack == expected ? QString() : QStringLiteral("out of order after switching to %1").arg(bar->currentIndex());
    };
    // Switches (a current index) and other changes (-2) in turn.
    struct Step
    {
        std::function<void()> run;
        int current;
    };
    const QList<Step> steps{
        {[&] { bar->setCurrentIndex(2); }, 2},
        {[&] { bar->setCurrentIndex(5); }, 5},
        {[&] { bar->insertTab(3, MakeTab(QStringLiteral("inserted"))); }, -2},
        {[&] { bar->setCurrentIndex(0); }, 0},
        {[&] { bar->setCurrentIndex(1); }, 1},
        {[&] { bar->moveTab(1, 6); }, -2},
        {[&] { bar->setCurrentIndex(7); }, 7},
        {[&] { bar->removeTab(4); }, -2},
        {[&] { bar->setCurrentIndex(3); }, 3},
        {[&] { bar->setCurrentIndex(-1); }, -1},
        {[&] { bar->setCurrentIndex(4); }, 4},
        {[&] { bar->addTab(MakeTab(QStringLiteral("added"))); }, -2},
        {[&] { bar->setCurrentIndex(8); }, 8},
        {[&] { bar->setCurrentIndex(0); }, 0},
        {[&] { bar->setCurrentIndex(1); }, 1},
    };
    for (const Step &step : steps) {
        step.run();
        if (step.current == -2)
            continue;
        QCOMPARE(bar->currentIndex(), step.current);
        const QString problem = checkStack();
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
    // A drag raises the fixed tabs over the dragged one; the next switch restacks.
    {
        SlotDrag drag(bar.get(), 5);
        drag.MoveLeftEdgeTo(KelTest::LogicalX(ButtonAt(bar.get(), 2)));
        drag.Release();
    }
    bar->setCurrentIndex(6);
    const QString problem = checkStack();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
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

// --- look -----------------------------------------------------------------------

void TstBrowserTabBar::renderLook_data()
{
    QTest::addColumn<int>("tabs");
    KelTest::AddScaleColumn();
    QTest::newRow("1 tab") << 1 << 1.0;
    QTest::newRow("5 tabs") << 5 << 1.0;
    QTest::newRow("20 tabs") << 20 << 1.0;
    QTest::newRow("5 tabs at 1.5") << 5 << 1.5;
}

void TstBrowserTabBar::renderLook()
{
    QFETCH(int, tabs);
    const double scale = KelTest::UseRowScale();
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
    // The pointer rests on the page, not on a tab (the bar follows where it really is).
    QCursor::setPos(window.mapToGlobal(QPoint(window.width() / 2, window.height() - S(4))));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCursor::setPos(page.mapToGlobal(page.rect().center()));
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

// What the button itself paints, without its children: the background.
static QImage PaintedBackground(QWidget *button)
{
    QImage image(button->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    button->render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

void TstBrowserTabBar::mirroredTabsPaintTheMirroredBackground_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("hovered");
    QTest::newRow("current") << 1 << false;
    QTest::newRow("other") << 0 << false;
    QTest::newRow("other, hovered") << 2 << true;
}

void TstBrowserTabBar::mirroredTabsPaintTheMirroredBackground()
{
    QFETCH(int, index);
    QFETCH(bool, hovered);
    // The same strip both ways; right to left the slanted edges lean the other way.
    auto leftToRight = MakeBar(600, 4);
    auto rightToLeft = MakeBar(600, 4);
    leftToRight->setLayoutDirection(Qt::LeftToRight); // also when the tests run mirrored
    rightToLeft->setLayoutDirection(Qt::RightToLeft);
    for (BrowserTabBar *bar : {leftToRight.get(), rightToLeft.get()}) {
        bar->setCurrentIndex(1);
        if (hovered)
            SendEvent(ButtonAt(bar, index), QEvent::Enter);
    }
    BrowserTabButton *left = ButtonAt(leftToRight.get(), index);
    BrowserTabButton *right = ButtonAt(rightToLeft.get(), index);
    QCOMPARE(right->size(), left->size());
    const QImage expected = PaintedBackground(left).mirrored(true, false);
    QVERIFY(!expected.isNull());
    // Asymmetric, or the comparison below would prove nothing.
    QVERIFY(expected != PaintedBackground(left));
    QCOMPARE(PaintedBackground(right), expected);
}

KELTAB_TEST_MAIN(TstBrowserTabBar)
#include "tst_browsertabbar.moc"
