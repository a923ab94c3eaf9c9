// SPDX-License-Identifier: MIT
// BrowserTabBarEx in overflow: the scroll offset, the arrows (driven by mouse events
// through the window system's path), the animated steps per 20 ms tick, the wheel and
// showIndex. At scale factors 1.0 and 1.5.

#include "keltabtest.h"

#include "browsertabarrowex.h"
#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "dpitool.h"
#include "tabbarextestbar.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QWheelEvent>
#include <QWindow>

#include <memory>

using namespace TabTest;

class TstBrowserTabBarExScroll : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void cleanupTestCase();

    void arrowStatesAtTheEnds_data();
    void arrowStatesAtTheEnds();
    void clickStepsPerTick_data();
    void clickStepsPerTick();
    void clickDuringAnimationIsDropped();
    void clickAtTheEndStartsNothing();
    void holdRunsToTheEndWithoutClick_data();
    void holdRunsToTheEndWithoutClick();
    void holdReleasedMidwayStops();
    void shortPressGivesOneStep();
    void doubleClickRunsToTheEnd_data();
    void doubleClickRunsToTheEnd();
    void wheel_data();
    void wheel();
    void wheelWithoutOverflowDoesNothing();
    void showIndexRightSide_data();
    void showIndexRightSide();
    void showIndexLeftSide_data();
    void showIndexLeftSide();
    void showIndexIgnored();
    void removingTabsDuringAnimationDoesNotOvershoot();
    void removingTabsClampsOffset();
    void leavingOverflowResetsOffset();
    void narrowingKeepsTheCurrentTabInView_data();
    void narrowingKeepsTheCurrentTabInView();
    void barDeletedWhileAnimating();
    void barDeletedWhileArrowHeld();

private:
    std::unique_ptr<QWidget> m_window;
    TestTabBarEx *m_bar = nullptr;

    TestTabBarEx *MakeBar(double scale, int scrolling = 20);
    int MinOffset() const { return m_bar->Viewport()->width() - m_bar->Content()->width(); }
    int S() const { return DpiTool::ScaleDefault(96); }
    QWindow *Window() const { return m_window->windowHandle(); }
    QPoint CentreOf(QWidget *w) const { return w->mapTo(m_window.get(), w->rect().center()); }
    void Invoke(const char *slot) { QVERIFY(QMetaObject::invokeMethod(m_bar, slot)); }
    bool Animating() const;
    void WaitForRest();
};

void TstBrowserTabBarExScroll::init()
{
    DpiTool::SetScaleFactor(1.0);
}

void TstBrowserTabBarExScroll::cleanup()
{
    m_window.reset();
    m_bar = nullptr;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(nullptr));
}

void TstBrowserTabBarExScroll::cleanupTestCase()
{
    DpiTool::SetScaleFactor(0);
}

TestTabBarEx *TstBrowserTabBarExScroll::MakeBar(double scale, int scrolling)
{
    DpiTool::SetScaleFactor(scale);
    m_window.reset(new QWidget);
    m_bar = new TestTabBarEx(m_window.get());
    m_bar->resize(BarWidthFor(1000), m_bar->ButtonBarHeight());
    m_window->resize(m_bar->size());
    Fill(*m_bar, scrolling);
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        return nullptr;
    return m_bar;
}

// The strip is at rest when it has not moved for a few ticks.
bool TstBrowserTabBarExScroll::Animating() const
{
    const int before = m_bar->ScrollOffset();
    QTest::qWait(70);
    return m_bar->ScrollOffset() != before;
}

void TstBrowserTabBarExScroll::WaitForRest()
{
    // The scroll timer stops when the strip arrives; a loaded machine (the sanitizer
    // build, parallel tests) only makes the ticks come later.
    QTRY_VERIFY_WITH_TIMEOUT(!m_bar->IsAnimating(), 30000);
    QVERIFY(!Animating());
}

static void ScaleRows()
{
    QTest::addColumn<double>("scale");
    QTest::newRow("1.0") << 1.0;
    QTest::newRow("1.5") << 1.5;
}

void TstBrowserTabBarExScroll::arrowStatesAtTheEnds_data()
{
    ScaleRows();
}

void TstBrowserTabBarExScroll::arrowStatesAtTheEnds()
{
    QFETCH(double, scale);
    QVERIFY(MakeBar(scale));
    QVERIFY(m_bar->IsOverflow());
    QCOMPARE(m_bar->ScrollOffset(), 0);
    QVERIFY(!m_bar->LeftArrow()->isEnabled());
    QVERIFY(m_bar->LeftShadow()->isHidden());
    QVERIFY(m_bar->RightArrow()->isEnabled());
    QVERIFY(!m_bar->RightShadow()->isHidden());

    Invoke("SlotRightArrowDoubleClicked");
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), MinOffset());
    QCOMPARE(KelTest::LogicalX(m_bar->Content()), MinOffset());
    QVERIFY(m_bar->LeftArrow()->isEnabled());
    QVERIFY(!m_bar->LeftShadow()->isHidden());
    QVERIFY(!m_bar->RightArrow()->isEnabled());
    QVERIFY(m_bar->RightShadow()->isHidden());

    // In between, both are enabled.
    Invoke("SlotLeftArrowClicked");
    WaitForRest();
    QVERIFY(m_bar->LeftArrow()->isEnabled());
    QVERIFY(m_bar->RightArrow()->isEnabled());
    QVERIFY(!m_bar->LeftShadow()->isHidden());
    QVERIFY(!m_bar->RightShadow()->isHidden());
}

void TstBrowserTabBarExScroll::clickStepsPerTick_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("ticks");
    // A click moves S = ScaleDefault(96) at S / 10 a tick, the last tick clamped.
    QTest::newRow("1.0: 96 at 9") << 1.0 << 9 << 11;
    QTest::newRow("1.5: 144 at 14") << 1.5 << 14 << 11;
}

void TstBrowserTabBarExScroll::clickStepsPerTick()
{
    QFETCH(double, scale);
    QFETCH(int, step);
    QFETCH(int, ticks);
    QVERIFY(MakeBar(scale));
    MoveRecorder recorder(m_bar->Content());
    QSignalSpy clicked(qobject_cast<BrowserTabArrowEx *>(m_bar->RightArrow()), &QPushButton::clicked);
    QTest::mouseClick(Window(), Qt::LeftButton, {}, CentreOf(m_bar->RightArrow()));
    QCOMPARE(clicked.count(), 1);
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), -S());
    QList<int> expected;
    for (int i = 1; i < ticks; ++i)
        expected << -step;
    expected << -(S() - (ticks - 1) * step);
    QCOMPARE(recorder.Steps(0), expected);

    // And back with the left arrow.
    recorder.xs.clear();
    QTest::mouseClick(Window(), Qt::LeftButton, {}, CentreOf(m_bar->LeftArrow()));
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), 0);
    QCOMPARE(recorder.xs.size(), ticks);
    QCOMPARE(recorder.Steps(-S()).first(), step);
}

void TstBrowserTabBarExScroll::clickDuringAnimationIsDropped()
{
    QVERIFY(MakeBar(1.0));
    Invoke("SlotRightArrowClicked");
    Invoke("SlotRightArrowClicked");
    QTest::qWait(40);
    Invoke("SlotRightArrowClicked");
    Invoke("SlotLeftArrowClicked");
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), -96);
}

void TstBrowserTabBarExScroll::clickAtTheEndStartsNothing()
{
    QVERIFY(MakeBar(1.0));
    MoveRecorder recorder(m_bar->Content());
    // At the start a left click clamps to the present offset: no animation begins, so
    // a right click right after it is not dropped.
    Invoke("SlotLeftArrowClicked");
    Invoke("SlotRightArrowClicked");
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), -96);
    QCOMPARE(recorder.xs.first(), -9);
}

void TstBrowserTabBarExScroll::holdRunsToTheEndWithoutClick_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("step");
    QTest::newRow("1.0: 19 a tick") << 1.0 << 19;
    QTest::newRow("1.5: 28 a tick") << 1.5 << 28;
}

void TstBrowserTabBarExScroll::holdRunsToTheEndWithoutClick()
{
    QFETCH(double, scale);
    QFETCH(int, step);
    QVERIFY(MakeBar(scale, 30));
    auto *right = qobject_cast<BrowserTabArrowEx *>(m_bar->RightArrow());
    QSignalSpy clicked(right, &QPushButton::clicked);
    MoveRecorder recorder(m_bar->Content());
    QElapsedTimer elapsed;
    elapsed.start();
    QTest::mousePress(Window(), Qt::LeftButton, {}, CentreOf(right));
    QTest::qWait(BrowserTabArrowEx::HoldDelay() - 200);
    // Nothing before the hold begins (checked only when this machine kept time).
    if (elapsed.elapsed() < BrowserTabArrowEx::HoldDelay() - 20)
        QCOMPARE(m_bar->ScrollOffset(), 0);
    QTRY_VERIFY(right->IsHolding());
    QTRY_COMPARE_WITH_TIMEOUT(m_bar->ScrollOffset(), MinOffset(), 10000);
    QTest::mouseRelease(Window(), Qt::LeftButton, {}, CentreOf(right));
    QVERIFY(!right->IsHolding());
    QTest::qWait(100);
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(m_bar->ScrollOffset(), MinOffset());
    const QList<int> steps = recorder.Steps(0);
    QVERIFY(steps.size() > 3);
    for (int i = 0; i < steps.size() - 1; ++i)
        QCOMPARE(steps.at(i), -step);
    QVERIFY(steps.last() >= -step && steps.last() < 0);
}

void TstBrowserTabBarExScroll::holdReleasedMidwayStops()
{
    QVERIFY(MakeBar(1.0, 40));
    auto *right = qobject_cast<BrowserTabArrowEx *>(m_bar->RightArrow());
    QSignalSpy clicked(right, &QPushButton::clicked);
    QTest::mousePress(Window(), Qt::LeftButton, {}, CentreOf(right));
    QTRY_VERIFY(m_bar->ScrollOffset() <= -100);
    QTest::mouseRelease(Window(), Qt::LeftButton, {}, CentreOf(right));
    const int stopped = m_bar->ScrollOffset();
    QVERIFY(stopped > MinOffset());
    QTest::qWait(150);
    QCOMPARE(m_bar->ScrollOffset(), stopped);
    QCOMPARE(clicked.count(), 0);
}

void TstBrowserTabBarExScroll::shortPressGivesOneStep()
{
    QVERIFY(MakeBar(1.0));
    QWidget *right = m_bar->RightArrow();
    QTest::mousePress(Window(), Qt::LeftButton, {}, CentreOf(right));
    QTest::qWait(200);
    QTest::mouseRelease(Window(), Qt::LeftButton, {}, CentreOf(right));
    WaitForRest();
    QTest::qWait(BrowserTabArrowEx::HoldDelay());
    QCOMPARE(m_bar->ScrollOffset(), -96);
}

void TstBrowserTabBarExScroll::doubleClickRunsToTheEnd_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("step");
    QTest::newRow("1.0: 48 a tick") << 1.0 << 48;
    QTest::newRow("1.5: 72 a tick") << 1.5 << 72;
}

void TstBrowserTabBarExScroll::doubleClickRunsToTheEnd()
{
    QFETCH(double, scale);
    QFETCH(int, step);
    QVERIFY(MakeBar(scale, 30));
    MoveRecorder recorder(m_bar->Content());
    QTest::mouseDClick(Window(), Qt::LeftButton, {}, CentreOf(m_bar->RightArrow()));
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), MinOffset());
    const QList<int> steps = recorder.Steps(0);
    QVERIFY(steps.size() > 3);
    for (int i = 0; i < steps.size() - 1; ++i)
        QCOMPARE(steps.at(i), -step);

    recorder.xs.clear();
    QTest::mouseDClick(Window(), Qt::LeftButton, {}, CentreOf(m_bar->LeftArrow()));
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), 0);
    QCOMPARE(recorder.Steps(MinOffset()).first(), step);
}

void TstBrowserTabBarExScroll::wheel_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<int>("expected"); // in steps of S from the start offset of -2 S
    QTest::newRow("1.0: towards the user scrolls right") << 1.0 << QPoint(0, -120) << -3;
    QTest::newRow("1.0: away from the user scrolls left") << 1.0 << QPoint(0, 120) << -1;
    QTest::newRow("1.0: zero counts as right") << 1.0 << QPoint(0, 0) << -3;
    QTest::newRow("1.0: horizontal right") << 1.0 << QPoint(-120, 10) << -3;
    QTest::newRow("1.0: horizontal left") << 1.0 << QPoint(120, -10) << -1;
    QTest::newRow("1.5: towards the user scrolls right") << 1.5 << QPoint(0, -120) << -3;
    QTest::newRow("1.5: away from the user scrolls left") << 1.5 << QPoint(0, 120) << -1;
}

void TstBrowserTabBarExScroll::wheel()
{
    QFETCH(double, scale);
    QFETCH(QPoint, angle);
    QFETCH(int, expected);
    QVERIFY(MakeBar(scale));
    Invoke("SlotRightArrowClicked");
    WaitForRest();
    Invoke("SlotRightArrowClicked");
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), -2 * S());

    // A sideways swipe towards the strip's end goes left on the screen right to left.
    angle.setX(KelTest::Forward(m_bar, angle.x()));
    const QPointF pos(m_bar->width() / 2.0, 10);
    QWheelEvent event(pos, QPointF(m_bar->mapToGlobal(pos.toPoint())), QPoint(), angle, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_bar, &event);
    QVERIFY(event.isAccepted());
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), expected * S());
}

void TstBrowserTabBarExScroll::wheelWithoutOverflowDoesNothing()
{
    QVERIFY(MakeBar(1.0, 3));
    QVERIFY(!m_bar->IsOverflow());
    MoveRecorder recorder(m_bar->Content());
    const QPointF pos(100, 10);
    QWheelEvent event(pos, QPointF(m_bar->mapToGlobal(pos.toPoint())), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_bar, &event);
    QVERIFY(!event.isAccepted()); // left to the parent
    QTest::qWait(100);
    QCOMPARE(m_bar->ScrollOffset(), 0);
    QVERIFY(recorder.xs.isEmpty());
}

void TstBrowserTabBarExScroll::showIndexRightSide_data()
{
    ScaleRows();
}

void TstBrowserTabBarExScroll::showIndexRightSide()
{
    QFETCH(double, scale);
    QVERIFY(MakeBar(scale));
    MoveRecorder recorder(m_bar->Content());
    const int viewport = m_bar->Viewport()->width();
    // Tab k = 10 (index 11) lies beyond the right edge: it is brought flush with it,
    // each tab counted as S wide.
    m_bar->showIndex(11);
    WaitForRest();
    const int target = viewport - 10 * S() - S();
    QCOMPARE(m_bar->ScrollOffset(), target);
    const QList<int> steps = recorder.Steps(0);
    QCOMPARE(steps.first(), -(S() / 2));
    // Now visible: nothing more.
    recorder.xs.clear();
    m_bar->showIndex(11);
    QTest::qWait(60);
    QVERIFY(recorder.xs.isEmpty());
}

void TstBrowserTabBarExScroll::showIndexLeftSide_data()
{
    ScaleRows();
}

void TstBrowserTabBarExScroll::showIndexLeftSide()
{
    QFETCH(double, scale);
    QVERIFY(MakeBar(scale));
    Invoke("SlotRightArrowDoubleClicked");
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), MinOffset());
    MoveRecorder recorder(m_bar->Content());
    // Tab k = 2 (index 3) lies beyond the left edge: flush with it.
    m_bar->showIndex(3);
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), -2 * S());
    QCOMPARE(recorder.Steps(MinOffset()).first(), S() / 2);
}

void TstBrowserTabBarExScroll::showIndexIgnored()
{
    QVERIFY(MakeBar(1.0));
    Invoke("SlotRightArrowDoubleClicked");
    WaitForRest();
    const int offset = m_bar->ScrollOffset();
    MoveRecorder recorder(m_bar->Content());
    m_bar->showIndex(0);  // the fixed home tab
    m_bar->showIndex(-1);
    m_bar->showIndex(m_bar->count());
    m_bar->showIndex(1000);
    QTest::qWait(80);
    QCOMPARE(m_bar->ScrollOffset(), offset);
    QVERIFY(recorder.xs.isEmpty());
}

void TstBrowserTabBarExScroll::removingTabsDuringAnimationDoesNotOvershoot()
{
    QVERIFY(MakeBar(1.0, 30));
    Invoke("SlotRightArrowPressed"); // runs to the end at 19 a tick
    QTest::qWait(50);
    for (int i = 0; i < 15; ++i)
        m_bar->removeTab(m_bar->count() - 1);
    WaitForRest();
    QVERIFY(m_bar->IsOverflow());
    QCOMPARE(m_bar->ScrollOffset(), MinOffset());
    QCOMPARE(KelTest::LogicalX(m_bar->Content()), MinOffset());
    QVERIFY(!m_bar->RightArrow()->isEnabled());
}

void TstBrowserTabBarExScroll::removingTabsClampsOffset()
{
    QVERIFY(MakeBar(1.0, 20));
    Invoke("SlotRightArrowDoubleClicked");
    WaitForRest();
    const int before = MinOffset();
    m_bar->removeTab(m_bar->count() - 1);
    QCOMPARE(MinOffset(), before + 96);
    QCOMPARE(m_bar->ScrollOffset(), MinOffset());
    QCOMPARE(KelTest::LogicalX(m_bar->Content()), MinOffset());
}

void TstBrowserTabBarExScroll::leavingOverflowResetsOffset()
{
    QVERIFY(MakeBar(1.0, 12));
    Invoke("SlotRightArrowDoubleClicked");
    WaitForRest();
    QVERIFY(m_bar->ScrollOffset() < 0);
    m_bar->resize(BarWidthFor(2000), m_bar->height());
    m_window->resize(m_bar->size());
    QVERIFY(!m_bar->IsOverflow());
    QCOMPARE(m_bar->ScrollOffset(), 0);
    QCOMPARE(KelTest::LogicalX(m_bar->Content()), 0);
    QVERIFY(m_bar->LeftArrowFrame()->isHidden());
    QVERIFY(m_bar->RightArrowFrame()->isHidden());
}

void TstBrowserTabBarExScroll::narrowingKeepsTheCurrentTabInView_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("narrowBy");
    QTest::addColumn<bool>("follows"); // whether the strip scrolls to keep it in view
    // 1.0: tabs of 96 in a viewport of 918; tab 9 (list index 9) ends at 864.
    QTest::newRow("1.0, at the right edge, 100 narrower") << 1.0 << 9 << 100 << true;
    QTest::newRow("1.0, at the right edge, 500 narrower") << 1.0 << 9 << 500 << true;
    QTest::newRow("1.0, first tab, 500 narrower") << 1.0 << 1 << 500 << false;
    QTest::newRow("1.5, at the right edge, 150 narrower") << 1.5 << 9 << 150 << true;
    // Out of view already: the strip stays where the user scrolled it.
    QTest::newRow("1.0, out of view") << 1.0 << 15 << 100 << false;
}

void TstBrowserTabBarExScroll::narrowingKeepsTheCurrentTabInView()
{
    QFETCH(double, scale);
    QFETCH(int, current);
    QFETCH(int, narrowBy);
    QFETCH(bool, follows);
    QVERIFY(MakeBar(scale, 20));
    m_bar->setCurrentIndex(current);
    WaitForRest();
    QCOMPARE(m_bar->ScrollOffset(), 0);
    QWidget *tab = m_bar->TabButton(current);
    const auto left = [&] { return KelTest::LogicalRectIn(tab, m_bar->Viewport()).x(); };
    const bool inViewBefore = left() >= 0 && left() + tab->width() <= m_bar->Viewport()->width();
    QCOMPARE(inViewBefore, current != 15);

    m_bar->resize(m_bar->width() - DpiTool::ScaleDefault(narrowBy), m_bar->height());
    QVERIFY(m_bar->IsOverflow());
    QCOMPARE(m_bar->ScrollOffset() != 0, follows);
    if (inViewBefore) {
        QVERIFY(left() >= 0);
        QVERIFY2(left() + tab->width() <= m_bar->Viewport()->width(),
                 qPrintable(QStringLiteral("%1 + %2 > %3").arg(left()).arg(tab->width()).arg(m_bar->Viewport()->width())));
        // Just far enough: flush with the right edge.
        if (follows)
            QCOMPARE(left() + tab->width(), m_bar->Viewport()->width());
    }
    QCOMPARE(m_bar->ScrollOffset(), KelTest::LogicalX(m_bar->Content()));
    QCOMPARE(m_bar->LeftArrow()->isEnabled(), m_bar->ScrollOffset() < 0);
}

void TstBrowserTabBarExScroll::barDeletedWhileAnimating()
{
    QVERIFY(MakeBar(1.0, 30));
    Invoke("SlotRightArrowPressed");
    QTest::qWait(50);
    QVERIFY(Animating());
    m_window.reset();
    m_bar = nullptr;
    QTest::qWait(100);
}

void TstBrowserTabBarExScroll::barDeletedWhileArrowHeld()
{
    QVERIFY(MakeBar(1.0, 30));
    auto *right = qobject_cast<BrowserTabArrowEx *>(m_bar->RightArrow());
    QWindow *window = Window();
    QTest::mousePress(window, Qt::LeftButton, {}, CentreOf(right));
    QTRY_VERIFY(right->IsHolding());
    QVERIFY(QApplication::activePopupWidget());
    m_window.reset();
    m_bar = nullptr;
    QVERIFY(!QApplication::activePopupWidget());
    QTest::qWait(100);
}

KELTAB_TEST_MAIN(TstBrowserTabBarExScroll)
#include "tst_browsertabbarexscroll.moc"
