// SPDX-License-Identifier: MIT
// The classic tab strip's work per operation does not grow with the number of tabs:
// the same operation on a strip of 20 tabs and on one of 200 re-polishes as many
// widgets, renders as many backgrounds and, where no width changes, moves as many
// buttons; and each tab moves at most once, right to left as well. Counted, not
// timed, so that a loaded machine cannot make it flake.

#include "keltabtest.h"
#include "classicbartest.h"
#include "hoverevents.h"
#include "kellabel.h"
#include "kelloadinglabelex.h"
#include "tabwork.h"

#include <QCursor>

using namespace ClassicTest;
using namespace TabWork;

namespace {

// Narrow enough that 20 tabs already overflow it: then adding or removing one changes no
// width at 20 tabs either, and the two strips differ only in their number of tabs.
constexpr int kBarWidth = 600;
// A tab in view at both sizes.
constexpr int kTab = 4;

} // namespace

class TstBrowserTabBarWork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void workDoesNotGrowWithTabs_data();
    void workDoesNotGrowWithTabs();
    void paintingReusesBackgroundsOfEveryWidth();
    void tabsComingIntoViewShowTheirState();
    void eachTabMovesOnceWhateverTheDirection_data();
    void eachTabMovesOnceWhateverTheDirection();

private:
    // A shown window with the library's default style sheet, holding a bar of @p tabs tabs.
    BrowserTabBar *MakeBar(int tabs, Qt::LayoutDirection direction = QGuiApplication::layoutDirection());
    // Runs @p operation on the bar and lets the event loop paint; returns its work.
    Work Measure(const QString &operation, BrowserTabBar *bar);

    std::unique_ptr<Environment> m_env;
    std::unique_ptr<QWidget> m_window;
    int m_serial = 0;
};

void TstBrowserTabBarWork::init()
{
    m_env = std::make_unique<Environment>();
}

void TstBrowserTabBarWork::cleanup()
{
    m_window.reset();
    FlushDeletes();
    m_env.reset();
}

BrowserTabBar *TstBrowserTabBarWork::MakeBar(int tabs, Qt::LayoutDirection direction)
{
    m_window = std::make_unique<QWidget>();
    m_window->setLayoutDirection(direction);
    m_window->setStyleSheet(KelTabStyle::DefaultStyleSheet());
    auto *bar = new TestBar(m_window.get());
    bar->InitMenu();
    bar->setGeometry(0, 0, kBarWidth, bar->minimumHeight());
    m_window->resize(kBarWidth, bar->minimumHeight());
    for (int i = 0; i < tabs; ++i)
        bar->addTab(MakeTab(QStringLiteral("Page %1").arg(m_serial++)));
    bar->setCurrentIndex(0);
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        return nullptr;
    // The pointer away from the tabs: a tab sliding under it would be hovered.
    QCursor::setPos(m_window->mapToGlobal(QPoint(kBarWidth / 2, 400)));
    FlushDeletes();
    QCoreApplication::processEvents();
    return bar;
}

Work TstBrowserTabBarWork::Measure(const QString &operation, BrowserTabBar *bar)
{
    const Work before = Now();
    if (operation == QLatin1String("switch")) {
        bar->setCurrentIndex(bar->currentIndex() == kTab ? kTab + 1 : kTab);
    } else if (operation == QLatin1String("switch far")) {
        // To and from a tab past the strip's end.
        bar->setCurrentIndex(bar->currentIndex() == kTab ? bar->count() - 1 : kTab);
    } else if (operation == QLatin1String("hover")) {
        KelTest::SendEnter(ButtonAt(bar, kTab));
        KelTest::SendLeave(ButtonAt(bar, kTab));
    } else if (operation == QLatin1String("rename")) {
        bar->setTabText(kTab, QStringLiteral("Title %1").arg(m_serial++));
    } else if (operation == QLatin1String("load")) {
        bar->LoadStart(kTab);
        bar->LoadFinished(kTab);
    } else if (operation == QLatin1String("add")) {
        bar->addTab(MakeTab(QStringLiteral("Page %1").arg(m_serial++)));
    } else if (operation == QLatin1String("insert")) {
        bar->insertTab(kTab, MakeTab(QStringLiteral("Page %1").arg(m_serial++)));
    } else if (operation == QLatin1String("remove")) {
        bar->removeTab(kTab);
    } else if (operation == QLatin1String("remove current")) {
        bar->setCurrentIndex(kTab);
        bar->removeTab(kTab);
    }
    FlushDeletes();
    QCoreApplication::processEvents();
    return Since(before);
}

void TstBrowserTabBarWork::workDoesNotGrowWithTabs_data()
{
    QTest::addColumn<QString>("operation");
    // Whether no tab changes its width or place, so that no button moves and every
    // background is painted from the images already built.
    QTest::addColumn<bool>("inPlace");
    // How many widgets the operation re-polishes; -1 where only its staying the same counts.
    QTest::addColumn<int>("repolishes");
    // Under the default style sheet only the title's colour follows the tab's state: a
    // switch re-polishes the two titles and nothing else.
    QTest::newRow("switch") << QStringLiteral("switch") << true << 2;
    QTest::newRow("switch far") << QStringLiteral("switch far") << true << -1;
    QTest::newRow("hover") << QStringLiteral("hover") << true << -1;
    QTest::newRow("rename") << QStringLiteral("rename") << true << -1;
    QTest::newRow("load") << QStringLiteral("load") << true << -1;
    QTest::newRow("add") << QStringLiteral("add") << false << -1;
    QTest::newRow("insert") << QStringLiteral("insert") << false << -1;
    QTest::newRow("remove") << QStringLiteral("remove") << false << -1;
    QTest::newRow("remove current") << QStringLiteral("remove current") << false << -1;
}

void TstBrowserTabBarWork::workDoesNotGrowWithTabs()
{
    QFETCH(QString, operation);
    QFETCH(bool, inPlace);
    QFETCH(int, repolishes);
    Work work[2];
    const int counts[2] = {20, 200};
    for (int i = 0; i < 2; ++i) {
        BrowserTabBar *bar = MakeBar(counts[i]);
        QVERIFY(bar);
        // Once to settle what a first time does (a first hover, a first load), then counted.
        Measure(operation, bar);
        work[i] = Measure(operation, bar);
    }
    QCOMPARE(work[1].repolishes, work[0].repolishes);
    QCOMPARE(work[1].renders, work[0].renders);
    if (repolishes >= 0)
        QCOMPARE(work[0].repolishes, quint64(repolishes));
    if (inPlace) {
        QCOMPARE(work[0].moves, quint64(0));
        QCOMPARE(work[1].moves, quint64(0));
        QCOMPARE(work[0].renders, quint64(0));
    }
}

void TstBrowserTabBarWork::paintingReusesBackgroundsOfEveryWidth()
{
    // 20 tabs in 600 pixels: the first few are a pixel wider than the rest. A full
    // repaint stretches no image again, whatever order the widths are painted in.
    BrowserTabBar *bar = MakeBar(20);
    QVERIFY(bar);
    QVERIFY(bar->TabButton(0)->width() != bar->TabButton(8)->width());
    const Work before = Now();
    for (int i = 0; i < 3; ++i) {
        bar->repaint();
        QCoreApplication::processEvents();
    }
    QCOMPARE(Since(before).renders, quint64(0));
}

void TstBrowserTabBarWork::tabsComingIntoViewShowTheirState()
{
    // Tabs past the strip's end keep no inner widgets; what happened to them meanwhile
    // shows once they come into view, and making their widgets re-polishes nothing.
    BrowserTabBar *bar = MakeBar(40);
    QVERIFY(bar);
    bar->setTabText(30, QStringLiteral("Renamed"));
    bar->LoadStart(31);
    bar->setCurrentIndex(32);
    QVERIFY(!ButtonAt(bar, 30)->findChild<KelLabel *>(QStringLiteral("TabButtonText")));
    QVERIFY(ButtonAt(bar, 2)->findChild<KelLabel *>(QStringLiteral("TabButtonText")));

    const Work before = Now();
    m_window->resize(2600, m_window->height());
    bar->resize(2600, bar->height());
    FlushDeletes();
    QCoreApplication::processEvents();
    QCOMPARE(Since(before).repolishes, quint64(0));

    auto *title = ButtonAt(bar, 30)->findChild<KelLabel *>(QStringLiteral("TabButtonText"));
    QVERIFY(title);
    QCOMPARE(title->text(), QStringLiteral("Renamed"));
    QVERIFY(title->isVisible());
    auto *loading = ButtonAt(bar, 31)->findChild<KelLoadingLabelEx *>(QStringLiteral("TabButtonLoading"));
    QVERIFY(loading);
    QVERIFY(loading->isVisible());
    QVERIFY(loading->IsAnimating());
    BrowserTabButton *current = ButtonAt(bar, 32);
    QCOMPARE(current->objectName(), QStringLiteral("TabButtonFront"));
    QVERIFY(CloseButtonOf(current)->isVisible());
    // The rest of the strip's tabs are narrow: their close buttons show only on hover.
    QVERIFY(!CloseButtonOf(ButtonAt(bar, 33))->isVisible());
}
namespace {

// Counts the moves of each widget it watches, as their move events tell them.
class MoveCounter : public QObject
{
public:
    explicit MoveCounter(const QVector<BrowserTabButton *> &buttons)
    {
        for (BrowserTabButton *button : buttons)
            button->installEventFilter(this);
    }
    QHash<QObject *, int> moves;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Move)
            ++moves[watched];
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

void TstBrowserTabBarWork::eachTabMovesOnceWhateverTheDirection_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("tabs");
    // What the operation changes, so that each row is sure to test what it says.
    QTest::addColumn<bool>("tabsResized");
    QTest::addColumn<bool>("stripResized");
    QTest::newRow("add, tabs narrower") << QStringLiteral("add") << 8 << true << false;
    QTest::newRow("insert, tabs narrower") << QStringLiteral("insert") << 8 << true << false;
    QTest::newRow("remove, tabs wider") << QStringLiteral("remove") << 8 << true << false;
    QTest::newRow("remove current") << QStringLiteral("remove current") << 8 << true << false;
    QTest::newRow("add, strip wider") << QStringLiteral("add") << 2 << false << true;
    QTest::newRow("add, strip wider and tabs narrower") << QStringLiteral("add") << 3 << true << true;
}

void TstBrowserTabBarWork::eachTabMovesOnceWhateverTheDirection()
{
    // Right to left a tab's place counts from the strip's right edge, which moves with
    // the strip's width, and its left edge moves with its own width; still every tab
    // moves at most once, straight to its new place.
    QFETCH(QString, operation);
    QFETCH(int, tabs);
    QFETCH(bool, tabsResized);
    QFETCH(bool, stripResized);
    int moves = 0;
    const Qt::LayoutDirection directions[2] = {Qt::LeftToRight, Qt::RightToLeft};
    for (int i = 0; i < 2; ++i) {
        BrowserTabBar *bar = MakeBar(tabs, directions[i]);
        QVERIFY(bar);
        const QWidget *strip = bar->TabButton(0)->parentWidget();
        const int tabWidth = bar->TabButton(0)->width();
        const int stripWidth = strip->width();
        MoveCounter counter(Buttons(bar));
        Measure(operation, bar);
        QCOMPARE(bar->TabButton(0)->width() != tabWidth, tabsResized);
        QCOMPARE(strip->width() != stripWidth, stripResized);
        for (auto it = counter.moves.cbegin(); it != counter.moves.cend(); ++it) {
            QVERIFY2(it.value() == 1, qPrintable(QStringLiteral("%1 moves of %2 (%3)")
                                                     .arg(it.value())
                                                     .arg(it.key()->objectName())
                                                     .arg(directions[i] == Qt::LeftToRight ? "ltr" : "rtl")));
            moves += it.value();
        }
    }
    QVERIFY(moves > 0);
}

KELTAB_TEST_MAIN(TstBrowserTabBarWork)
#include "tst_browsertabbarwork.moc"
