// SPDX-License-Identifier: MIT
// The scrolling strip's work per operation follows what the operation changes, not
// the number of tabs: the same operation on a strip of 100 tabs and on one of 1,000
// re-polishes as many widgets, moves as many buttons and looks at as many tabs, and
// an insertion or a removal moves exactly the tabs after it. Counted, not timed, so that a loaded
// machine cannot make it flake. Tabs far out of view are hidden, yet every tab keeps
// the geometry the layout gives it.

#include "keltabtest.h"

#include "barwindowtest.h"
#include "keltabstyle.h"
#include "tabbarextestbar.h"
#include "tabwork.h"

using namespace TabTest;
using namespace TabWork;

namespace {

// What one layout may look at besides the tabs it moves: the tabs in and near the view
// (about twenty here) when it decides which hold their inner widgets, and the
// separators around the current tab.
constexpr quint64 kVisitsAroundTheView = 64;

// Room for eight tabs of the maximum width: a strip of 100 tabs already overflows,
// so that both strips hold tabs of the minimum width and differ only in their number.
constexpr int kAvailable = 8 * 224;
// A tab in view at both sizes.
constexpr int kTab = 4;

} // namespace

class TstBrowserTabBarExWork : public BarWindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void workFollowsTheChangeNotTheTabs_data();
    void workFollowsTheChangeNotTheTabs();
    void listChangesMoveTheTabsAfterThem_data();
    void listChangesMoveTheTabsAfterThem();
    void farTabsHideAndComeBackWhenScrolledTo();
    void everyTabKeepsItsPlace();

private:
    // A shown window with the library's default style sheet, holding a bar of @p scrolling tabs after the home tab.
    TestTabBarEx *MakeBar(int scrolling);
    // Runs @p operation on the bar and lets the event loop finish it; returns its work.
    Work Measure(const QString &operation, TestTabBarEx *bar);
    // Scrolls to the tab at @p index and waits for the animation to end; false if it does not.
    static bool ScrollTo(TestTabBarEx *bar, int index);
    // Whether every scrolling tab stands where the layout puts it; the first wrong one otherwise.
    static QString MisplacedTab(TestTabBarEx *bar);

    int m_serial = 0;
};

TestTabBarEx *TstBrowserTabBarExWork::MakeBar(int scrolling)
{
    auto *bar = NewBarInWindow<TestTabBarEx>(kAvailable);
    m_window->setStyleSheet(KelTabStyle::DefaultStyleSheet());
    bar->InitMenu();
    Fill(*bar, scrolling);
    bar->setCurrentIndex(kTab);
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        return nullptr;
    // With the focus, the bar would scroll to every tab made current: an animation
    // whose ticks, counted or not, would depend on the machine's speed.
    bar->clearFocus();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    return bar;
}

Work TstBrowserTabBarExWork::Measure(const QString &operation, TestTabBarEx *bar)
{
    const Work before = Now();
    const QString title = QStringLiteral("Page %1").arg(m_serial++);
    if (operation == QLatin1String("switch")) {
        bar->setCurrentIndex(bar->currentIndex() == kTab ? kTab + 1 : kTab);
    } else if (operation == QLatin1String("switch far")) {
        bar->setCurrentIndex(bar->currentIndex() == kTab ? bar->count() - 1 : kTab);
    } else if (operation == QLatin1String("add")) {
        bar->addTab(Web(title));
    } else if (operation == QLatin1String("remove last")) {
        bar->removeTab(bar->count() - 1);
    } else if (operation == QLatin1String("move near")) {
        bar->moveTab(kTab + 1, kTab + 3);
    } else if (operation == QLatin1String("rename")) {
        bar->setTabText(kTab, title);
    } else if (operation == QLatin1String("resize")) {
        bar->resize(bar->width() - 48, bar->height());
        bar->resize(bar->width() + 48, bar->height());
    } else if (operation == QLatin1String("scroll")) {
        // Thirty tabs on and back: the same tabs come into view and go at both sizes.
        // A scroll that never ends counts as endless work.
        if (!ScrollTo(bar, kTab + 30) || !ScrollTo(bar, kTab))
            return {~quint64(0), ~quint64(0), ~quint64(0), ~quint64(0)};
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    return Since(before);
}

bool TstBrowserTabBarExWork::ScrollTo(TestTabBarEx *bar, int index)
{
    bar->showIndex(index);
    return QTest::qWaitFor([bar] { return !bar->IsAnimating(); }, 30000);
}

QString TstBrowserTabBarExWork::MisplacedTab(TestTabBarEx *bar)
{
    const int width = bar->MinButtonWidth();
    for (int i = 1; i < bar->count(); ++i) {
        const BrowserTabButtonEx *button = bar->TabButton(i);
        const int x = KelTest::LogicalX(button);
        if (x != (i - 1) * width || button->width() != width || button->y() != bar->ButtonTop())
            return QStringLiteral("tab %1 at %2 %3 wide, expected %4 %5 wide")
                .arg(i)
                .arg(x)
                .arg(button->width())
                .arg((i - 1) * width)
                .arg(width);
    }
    return QString();
}

void TstBrowserTabBarExWork::workFollowsTheChangeNotTheTabs_data()
{
    QTest::addColumn<QString>("operation");
    // How many buttons change their geometry.
    QTest::addColumn<int>("moves");
    // How many layouts the operation runs (each may look at the tabs near the view).
    QTest::addColumn<int>("layouts");
    // How many widgets the operation re-polishes; -1 where only its staying the same counts.
    QTest::addColumn<int>("repolishes");
    // Under the default style sheet a switch between neighbours re-polishes the two
    // tabs whose state changes and the eight inner widgets whose look follows a tab's
    // state or a separator's.
    QTest::newRow("switch") << QStringLiteral("switch") << 0 << 1 << 10;
    QTest::newRow("switch far") << QStringLiteral("switch far") << 0 << 1 << -1;
    QTest::newRow("rename") << QStringLiteral("rename") << 0 << 1 << -1;
    // The new tab is sized and moved to the end.
    QTest::newRow("add") << QStringLiteral("add") << 2 << 1 << -1;
    QTest::newRow("remove last") << QStringLiteral("remove last") << 0 << 1 << -1;
    // The moved tab and the two it passes.
    QTest::newRow("move near") << QStringLiteral("move near") << 3 << 1 << -1;
    // Every width stays the minimum: the strip stays, only the frames move.
    QTest::newRow("resize") << QStringLiteral("resize") << 0 << 2 << -1;
    // Thirty tabs on and back, a pass at every step of the animation.
    QTest::newRow("scroll") << QStringLiteral("scroll") << 0 << 60 << -1;
}

void TstBrowserTabBarExWork::workFollowsTheChangeNotTheTabs()
{
    QFETCH(QString, operation);
    QFETCH(int, moves);
    QFETCH(int, layouts);
    QFETCH(int, repolishes);
    Work work[2];
    const int counts[2] = {100, 1000};
    for (int i = 0; i < 2; ++i) {
        TestTabBarEx *bar = MakeBar(counts[i]);
        QVERIFY(bar);
        // Once to settle what a first time does, then counted.
        Measure(operation, bar);
        work[i] = Measure(operation, bar);
        // Nothing left running that would do more work after the count.
        QVERIFY(!bar->IsAnimating());
        QCOMPARE(MisplacedTab(bar), QString());
    }
    QCOMPARE(work[1].repolishes, work[0].repolishes);
    if (repolishes >= 0)
        QCOMPARE(work[0].repolishes, quint64(repolishes));
    QCOMPARE(work[1].moves, work[0].moves);
    QCOMPARE(work[0].moves, quint64(moves));
    QCOMPARE(work[1].visits, work[0].visits);
    QVERIFY2(work[0].visits <= layouts * kVisitsAroundTheView, qPrintable(QString::number(work[0].visits)));
}

void TstBrowserTabBarExWork::listChangesMoveTheTabsAfterThem_data()
{
    QTest::addColumn<int>("tabs");
    QTest::addColumn<int>("at");
    QTest::newRow("100 tabs, near the start") << 100 << 3;
    QTest::newRow("100 tabs, in the middle") << 100 << 50;
    QTest::newRow("1000 tabs, in the middle") << 1000 << 500;
    QTest::newRow("1000 tabs, near the end") << 1000 << 990;
}

void TstBrowserTabBarExWork::listChangesMoveTheTabsAfterThem()
{
    QFETCH(int, tabs);
    QFETCH(int, at);
    TestTabBarEx *bar = MakeBar(tabs);
    QVERIFY(bar);
    // The tabs at `at` and behind it, which an insertion there pushes on.
    const int after = bar->count() - at;

    Work before = Now();
    bar->insertTab(at, Web(QStringLiteral("Inserted")));
    // Those tabs, and the new one sized and placed; nothing before them is looked at.
    Work work = Since(before);
    QCOMPARE(work.moves, quint64(after + 2));
    QVERIFY2(work.visits <= quint64(after) + kVisitsAroundTheView, qPrintable(QString::number(work.visits)));
    QCOMPARE(MisplacedTab(bar), QString());

    before = Now();
    bar->removeTab(at);
    work = Since(before);
    QCOMPARE(work.moves, quint64(after));
    QVERIFY2(work.visits <= quint64(after) + kVisitsAroundTheView, qPrintable(QString::number(work.visits)));
    QCOMPARE(MisplacedTab(bar), QString());
}

void TstBrowserTabBarExWork::farTabsHideAndComeBackWhenScrolledTo()
{
    TestTabBarEx *bar = MakeBar(100);
    QVERIFY(bar);
    BrowserTabButtonEx *near = bar->TabButton(kTab);
    // Beyond the twenty tabs in view and a viewport more.
    BrowserTabButtonEx *far = bar->TabButton(60);
    QVERIFY(near->isVisible());
    QVERIFY(far->isHidden());
    // Hidden, it has its place all the same.
    QCOMPARE(KelTest::LogicalX(far), 59 * bar->MinButtonWidth());
    QCOMPARE(far->width(), bar->MinButtonWidth());

    QVERIFY(ScrollTo(bar, 60));
    QVERIFY(far->isVisible());
    QVERIFY(far->findChild<QFrame *>(QStringLiteral("TabButtonContentExWithSep")) ||
            far->findChild<QFrame *>(QStringLiteral("TabButtonContentExNoSep")));
    QVERIFY(near->isHidden());

    // A tab made current far out of view shows its state once it comes into view.
    bar->setCurrentIndex(10);
    QVERIFY(ScrollTo(bar, 10));
    QVERIFY(bar->TabButton(10)->isVisible());
    QVERIFY(bar->TabButton(10)->IsChecked());
    QCOMPARE(bar->TabButton(10)->objectName(), QStringLiteral("TabButtonFrontEx"));
    QVERIFY(!bar->TabButton(10)->IsSeparatorVisible());
    QVERIFY(!bar->TabButton(9)->IsSeparatorVisible());
    QVERIFY(bar->TabButton(11)->IsSeparatorVisible());
}

void TstBrowserTabBarExWork::everyTabKeepsItsPlace()
{
    // However little each layout touches, after any run of changes every tab, hidden
    // or shown, stands where a full layout would put it.
    TestTabBarEx *bar = MakeBar(500);
    QVERIFY(bar);
    bar->insertTab(250, Web(QStringLiteral("a")));
    bar->removeTab(3);
    bar->moveTab(400, 20);
    bar->moveTab(21, 480);
    bar->setCurrentIndex(300);
    bar->addTab(Web(QStringLiteral("b")));
    bar->insertTab(1, Web(QStringLiteral("c")));
    bar->removeTab(bar->count() - 1);
    bar->resize(bar->width() - 100, bar->height());
    QCoreApplication::processEvents();
    QCOMPARE(MisplacedTab(bar), QString());
    // The insertion before it moved the current tab on by one.
    const int current = 301;
    QCOMPARE(bar->currentIndex(), current);
    QCOMPARE(bar->TabButton(current)->objectName(), QStringLiteral("TabButtonFrontEx"));
    for (int i = 1; i < bar->count(); ++i) {
        const BrowserTabButtonEx *button = bar->TabButton(i);
        QVERIFY2(button->IsChecked() == (i == current), qPrintable(QString::number(i)));
        // Separators hide next to the current tab only (no tab is hovered).
        QVERIFY2(button->IsSeparatorVisible() == (i != current - 1 && i != current), qPrintable(QString::number(i)));
    }
}

KELTAB_TEST_MAIN(TstBrowserTabBarExWork)
#include "tst_browsertabbarexwork.moc"
