// SPDX-License-Identifier: MIT
// BrowserTabBarEx after a close button: the widths stay frozen under the pointer, the
// tabs slide into the gap, the rightmost close slides or snaps the strip, and the
// pointer leaving the bar ends it all 200 ms later. At scale factors 1.0 and 1.5.

#include "hoverevents.h"
#include "keltabtest.h"

#include "barwindowtest.h"
#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "dpitool.h"
#include "tabbarextestbar.h"

#include <QElapsedTimer>
#include <QPointer>

#include <memory>

using namespace TabTest;

namespace {

QList<int> Repeat(int value, int times)
{
    QList<int> list;
    for (int i = 0; i < times; ++i)
        list << value;
    return list;
}

QList<int> Running(const QList<int> &widths)
{
    QList<int> xs;
    int x = 0;
    for (int w : widths) {
        xs << x;
        x += w;
    }
    return xs;
}

} // namespace

class TstBrowserTabBarExClosing : public BarWindowTest
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

private Q_SLOTS:
    void closeButtonFreezesWidthsAndSlidesLeft_data();
    void closeButtonFreezesWidthsAndSlidesLeft();
    void closingStaysOnThroughFurtherCloses();
    void activationSpreadsLeftoverPixels_data();
    void activationSpreadsLeftoverPixels();
    void closeRightmostSlidesByQuarterWidths_data();
    void closeRightmostSlidesByQuarterWidths();
    void closeRightmostAfterEarlierClosesSlidesOneWidth_data();
    void closeRightmostAfterEarlierClosesSlidesOneWidth();
    void arrowsFollowWhereTheShortStripCanMove_data();
    void arrowsFollowWhereTheShortStripCanMove();
    void closeRightmostSnapsAndEndsOverflow_data();
    void closeRightmostSnapsAndEndsOverflow();
    void closeRightmostWithoutOverflowRefits();
    void closeLastTabOfAll();
    void leaveEndsClosingAfterDelayEvenIfPointerReturns();
    void leaveOverTheBarStartsNothing();
    void leaveOutsideClosingStartsNothing();
    void delayTimeoutEndsClosing();
    void resizeDuringClosingRelayoutsButStaysClosing();
    void insertDuringClosingRelayouts();
    void closeRequestUnansweredKeepsLayout();

    void removeTabInsideCloseRequestedKeepsWidths();
    void removeOtherTabsInsideCurrentChangedWhileClosing();
    void deleteBarWhileDelayTimerRuns();
    void deleteBarWhileStripSlides();
    void deleteBarInsideCloseRequested();

private:
    QPointer<TestTabBarEx> m_bar;

    TestTabBarEx *MakeBar(double scale, int designAvailable, int scrolling);
    void CloseByButton(int index);
    void Leave(bool pointerOutside);
    QPoint Outside() const { return m_bar->mapToGlobal(QPoint(10, m_bar->height() + 200)); }
    QPoint Inside() const { return m_bar->mapToGlobal(QPoint(10, 10)); }
    int MinOffset() const { return m_bar->Viewport()->width() - m_bar->Content()->width(); }
};

// A host that closes every tab it is asked to close, from inside the request.
TestTabBarEx *TstBrowserTabBarExClosing::MakeBar(double scale, int designAvailable, int scrolling)
{
    DpiTool::SetScaleFactor(scale);
    m_bar = NewBarInWindow<TestTabBarEx>(designAvailable);
    Fill(*m_bar, scrolling);
    TestTabBarEx *bar = m_bar;
    connect(bar, &BrowserTabBarEx::tabCloseRequested, bar, [bar](int index) { bar->removeTab(index); });
    return m_bar;
}

// What the tab's own close button does when clicked.
void TstBrowserTabBarExClosing::CloseByButton(int index)
{
    BrowserTabButtonEx *button = m_bar->TabButton(index);
    QVERIFY(button);
    QVERIFY(QMetaObject::invokeMethod(button, "SlotCloseClicked"));
}

void TstBrowserTabBarExClosing::Leave(bool pointerOutside)
{
    QCursor::setPos(pointerOutside ? Outside() : Inside());
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(m_bar, &leave);
}

void TstBrowserTabBarExClosing::closeButtonFreezesWidthsAndSlidesLeft_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("width"); // of every scrolling tab: available / 6
    QTest::newRow("1.0") << 1.0 << 166;
    QTest::newRow("1.5") << 1.5 << 250;
}

void TstBrowserTabBarExClosing::closeButtonFreezesWidthsAndSlidesLeft()
{
    QFETCH(double, scale);
    QFETCH(int, width);
    MakeBar(scale, 1000, 6);
    m_bar->setCurrentIndex(6);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(width, 6));
    const int stripBefore = m_bar->Content()->width();
    QCOMPARE(stripBefore, DpiTool::ScaleDefault(1000));
    const TabDataPtr third = m_bar->GetTabData(3);

    // The third of six tabs goes: five tabs of the old width remain, the three right
    // of it one width further left, and the strip is one width narrower.
    QSignalSpy changed(m_bar, &BrowserTabBarEx::currentChanged);
    CloseByButton(3);
    QCOMPARE(m_bar->count(), 6);
    QCOMPARE(m_bar->GetIndexByTabData(third), -1);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(width, 5));
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, width, 2 * width, 3 * width, 4 * width}));
    QCOMPARE(m_bar->Content()->width(), stripBefore - width);
    QCOMPARE(m_bar->ButtonWidth(), width);
    QCOMPARE(m_bar->currentIndex(), 5);
    QCOMPARE(changed.count(), 0);
    QVERIFY(!m_bar->IsOverflow());
}

void TstBrowserTabBarExClosing::closingStaysOnThroughFurtherCloses()
{
    MakeBar(1.0, 1000, 6);
    m_bar->setCurrentIndex(6);
    CloseByButton(3);
    CloseByButton(3);
    CloseByButton(3);
    // Three closes in a row at the same place: still 166 each, side by side.
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(166, 3));
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, 166, 332}));
    QCOMPARE(m_bar->Content()->width(), 1000 - 3 * 166);
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Home", "Tab 1", "Tab 2", "Tab 6"}));
    // A removal by the host alone (no click) stays frozen too.
    m_bar->removeTab(1);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(166, 2));
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, 166}));
}

void TstBrowserTabBarExClosing::activationSpreadsLeftoverPixels_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("scrolling");
    QTest::addColumn<int>("activate");
    QTest::addColumn<int>("stripWidth");
    QTest::addColumn<QList<int>>("widths");
    // 1.0, six tabs of 166 (1000 / 6), the third closed: the strip is 834 for five.
    // Current at index 2: extra = 834 - 4 * 166 - 166 = 4, handed out while
    // (list index - seen) < 4: indexes 1, 3 and 4, one pixel fewer than four, as the
    // list index counts the home tab.
    QTest::newRow("1.0, scrolling tab current") << 1.0 << 6 << 2 << 834 << QList<int>({167, 166, 167, 167, 166});
    // Current the home tab: extra = 834 - 5 * 166 = 4, indexes 1 to 3.
    QTest::newRow("1.0, home current") << 1.0 << 6 << 0 << 834 << QList<int>({167, 167, 167, 166, 166});
    // 1.5, seven tabs of 214 (1500 / 7), the third closed: the strip is 1286 for six;
    // extra = 1286 - 5 * 214 - 214 = 2, but index 1 is the only one below 2.
    QTest::newRow("1.5, scrolling tab current") << 1.5 << 7 << 2 << 1286 << QList<int>({215, 214, 214, 214, 214, 214});
    // No tab current counts like the home tab: extra = 1286 - 6 * 214 = 2.
    QTest::newRow("1.5, none current") << 1.5 << 7 << -1 << 1286 << QList<int>({215, 214, 214, 214, 214, 214});
}

void TstBrowserTabBarExClosing::activationSpreadsLeftoverPixels()
{
    QFETCH(double, scale);
    QFETCH(int, scrolling);
    QFETCH(int, activate);
    QFETCH(int, stripWidth);
    QFETCH(QList<int>, widths);
    MakeBar(scale, 1000, scrolling);
    m_bar->setCurrentIndex(scrolling);
    CloseByButton(3);
    QCOMPARE(m_bar->Content()->width(), stripWidth);
    QSignalSpy changed(m_bar, &BrowserTabBarEx::currentChanged);
    m_bar->setCurrentIndex(activate);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_bar->ScrollingWidths(), widths);
    QCOMPARE(m_bar->ScrollingXs(), Running(widths));
    // The strip keeps its width.
    QCOMPARE(m_bar->Content()->width(), stripWidth);
    for (int i = 0; i < m_bar->count(); ++i)
        QCOMPARE(m_bar->TabButton(i)->IsChecked(), i == activate);
}

void TstBrowserTabBarExClosing::closeRightmostSlidesByQuarterWidths_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("minOffset");
    QTest::addColumn<QList<int>>("slide");
    // Eleven tabs overflow at the minimum width (1.0: 96, strip 1056, viewport 918).
    // Scrolled to the end, 138 is more than a tab: the strip loses one width and
    // slides right by 96 in four ticks of 24.
    QTest::newRow("1.0") << 1.0 << -138 << QList<int>({-114, -90, -66, -42});
    // 1.5: 144 wide, strip 1584, viewport 1377; four ticks of 36.
    QTest::newRow("1.5") << 1.5 << -207 << QList<int>({-171, -135, -99, -63});
}

void TstBrowserTabBarExClosing::closeRightmostSlidesByQuarterWidths()
{
    QFETCH(double, scale);
    QFETCH(int, minOffset);
    QFETCH(QList<int>, slide);
    MakeBar(scale, 1000, 11);
    m_window->show(); // hidden widgets hear of their moves only when shown
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(m_bar->IsOverflow());
    const int width = DpiTool::ScaleDefault(96);
    m_bar->setCurrentIndex(11);
    QVERIFY(QMetaObject::invokeMethod(m_bar, "SlotRightArrowDoubleClicked"));
    QTRY_COMPARE(m_bar->ScrollOffset(), minOffset);
    QCOMPARE(MinOffset(), minOffset);

    MoveRecorder recorder(m_bar->Content());
    const int stripBefore = m_bar->Content()->width();
    CloseByButton(11);
    QCOMPARE(m_bar->count(), 11);
    QCOMPARE(m_bar->currentIndex(), 10);
    // At once: one width narrower, not yet moved; the tabs keep their width.
    QCOMPARE(m_bar->Content()->width(), stripBefore - width);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(width, 10));
    QCOMPARE(m_bar->ScrollOffset(), minOffset);
    QTRY_COMPARE(m_bar->ScrollOffset(), minOffset + width);
    QCOMPARE(recorder.xs, slide);
    QCOMPARE(KelTest::LogicalX(m_bar->Content()), minOffset + width);
    // Still in overflow and now at the end of the shorter strip.
    QVERIFY(m_bar->IsOverflow());
    QVERIFY(!m_bar->LeftArrowFrame()->isHidden());
    QCOMPARE(m_bar->ScrollOffset(), MinOffset());
    QVERIFY(!m_bar->RightArrow()->isEnabled());
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(width, 10));
}

void TstBrowserTabBarExClosing::closeRightmostAfterEarlierClosesSlidesOneWidth_data()
{
    QTest::addColumn<int>("earlierCloses");
    for (int k = 0; k <= 4; ++k)
        QTest::addRow("%d earlier close(s)", k) << k;
}

// Closing tabs in the middle at the scrolled end leaves the strip shorter than the
// view (the widths stay frozen under the pointer). Closing the rightmost tab then
// still slides the strip by exactly one width, in quarter-width ticks.
void TstBrowserTabBarExClosing::closeRightmostAfterEarlierClosesSlidesOneWidth()
{
    QFETCH(int, earlierCloses);
    MakeBar(1.0, 1000, 16);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_bar->setCurrentIndex(16);
    QVERIFY(QMetaObject::invokeMethod(m_bar, "SlotRightArrowDoubleClicked"));
    QTRY_COMPARE(m_bar->ScrollOffset(), MinOffset());
    const int start = MinOffset();
    QCOMPARE(start, 918 - 16 * 96);

    for (int i = 0; i < earlierCloses; ++i)
        CloseByButton(12);
    QCOMPARE(m_bar->count(), 17 - earlierCloses);
    QCOMPARE(m_bar->ScrollOffset(), start);
    QCOMPARE(MinOffset(), start + earlierCloses * 96);

    MoveRecorder recorder(m_bar->Content());
    CloseByButton(m_bar->count() - 1);
    QTRY_VERIFY(!m_bar->IsAnimating());
    QCOMPARE(recorder.xs, QList<int>({start + 24, start + 48, start + 72, start + 96}));
    QCOMPARE(m_bar->ScrollOffset(), start + 96);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(96, 15 - earlierCloses));
}

void TstBrowserTabBarExClosing::arrowsFollowWhereTheShortStripCanMove_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<bool>("moves");
    QTest::newRow("right arrow click") << QByteArray("SlotRightArrowClicked") << false;
    QTest::newRow("right arrow double click") << QByteArray("SlotRightArrowDoubleClicked") << false;
    QTest::newRow("right arrow held") << QByteArray("SlotRightArrowPressed") << false;
    QTest::newRow("wheel towards the end") << QByteArray("wheel down") << false;
    QTest::newRow("left arrow click") << QByteArray("SlotLeftArrowClicked") << true;
    QTest::newRow("wheel towards the start") << QByteArray("wheel up") << true;
}

// After closes in the middle at the scrolled end, the offset lies past the end of the
// shorter strip: the right arrow is off (nothing further right to show) and every way
// of scrolling towards the end leaves the strip where it is. A step towards the start
// (96 here) is not enough to get back inside the strip's range, so it lands with the
// strip's end flush with the view's.
void TstBrowserTabBarExClosing::arrowsFollowWhereTheShortStripCanMove()
{
    QFETCH(QByteArray, action);
    QFETCH(bool, moves);
    MakeBar(1.0, 1000, 16);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(QMetaObject::invokeMethod(m_bar, "SlotRightArrowDoubleClicked"));
    QTRY_COMPARE(m_bar->ScrollOffset(), MinOffset());
    const int start = m_bar->ScrollOffset();
    CloseByButton(12);
    CloseByButton(12);
    QVERIFY(m_bar->ScrollOffset() < MinOffset());
    QVERIFY(!m_bar->RightArrow()->isEnabled());
    QVERIFY(m_bar->RightShadow()->isHidden());
    QVERIFY(m_bar->LeftArrow()->isEnabled());
    QVERIFY(!m_bar->LeftShadow()->isHidden());

    if (action.startsWith("wheel")) {
        const QPoint angle(0, action.endsWith("up") ? 120 : -120);
        const QPointF pos(m_bar->width() / 2.0, 10);
        QWheelEvent event(pos, QPointF(m_bar->mapToGlobal(pos.toPoint())), QPoint(), angle, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(m_bar, &event);
    } else {
        QVERIFY(QMetaObject::invokeMethod(m_bar, action.constData()));
    }
    QCOMPARE(m_bar->IsAnimating(), moves);
    QTRY_VERIFY(!m_bar->IsAnimating());
    QCOMPARE(m_bar->ScrollOffset(), moves ? start + 2 * 96 : start);
    QCOMPARE(m_bar->ScrollOffset() == MinOffset(), moves);
    // Still closing: the widths stay as they were.
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(96, 14));
}

void TstBrowserTabBarExClosing::closeRightmostSnapsAndEndsOverflow_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("scrolled");
    QTest::addColumn<int>("stripWidth");
    QTest::addColumn<int>("viewportWidth");
    QTest::addColumn<QList<int>>("widths");
    // 1.0: from the end (-138) one click back is -42, less than a tab. The strip snaps
    // to 0 and loses those 42: 1014; with the 40 of the arrows back it is 1054, and ten
    // tabs of 105 fit, so overflow ends. extra = 1054 - 9 * 105 - 105 = 4, handed out
    // at list indexes 1 to 3.
    QTest::newRow("1.0") << 1.0 << -42 << 1054 << 1000
                         << (QList<int>({106, 106, 106}) + Repeat(105, 7));
    // 1.5: -207 + 144 = -63; 1584 - 63 + 60 = 1581, ten tabs of 158; extra = 1581 - 10 * 158 = 1,
    // and list index 1 is not below 1: nobody gets it.
    QTest::newRow("1.5") << 1.5 << -63 << 1581 << 1500 << Repeat(158, 10);
}

void TstBrowserTabBarExClosing::closeRightmostSnapsAndEndsOverflow()
{
    QFETCH(double, scale);
    QFETCH(int, scrolled);
    QFETCH(int, stripWidth);
    QFETCH(int, viewportWidth);
    QFETCH(QList<int>, widths);
    MakeBar(scale, 1000, 11);
    m_bar->setCurrentIndex(11);
    QVERIFY(QMetaObject::invokeMethod(m_bar, "SlotRightArrowDoubleClicked"));
    QTRY_COMPARE(m_bar->ScrollOffset(), MinOffset());
    QVERIFY(QMetaObject::invokeMethod(m_bar, "SlotLeftArrowClicked"));
    QTRY_COMPARE(m_bar->ScrollOffset(), scrolled);

    CloseByButton(11);
    QCOMPARE(m_bar->ScrollOffset(), 0);
    QCOMPARE(KelTest::LogicalPos(m_bar->Content()), QPoint(0, 0));
    QVERIFY(!m_bar->IsOverflow());
    QVERIFY(m_bar->LeftArrowFrame()->isHidden());
    QVERIFY(m_bar->RightArrowFrame()->isHidden());
    QCOMPARE(KelTest::LogicalGeometry(m_bar->Viewport()),
             QRect(DpiTool::ScaleDefault(84), 0, viewportWidth, m_bar->height()));
    QCOMPARE(m_bar->Content()->width(), stripWidth);
    QCOMPARE(m_bar->ScrollingWidths(), widths);
    QCOMPARE(m_bar->ScrollingXs(), Running(widths));
    QCOMPARE(m_bar->currentIndex(), 10);
    QCOMPARE(m_bar->TabButton(10)->width(), widths.last());
}

void TstBrowserTabBarExClosing::closeRightmostWithoutOverflowRefits()
{
    MakeBar(1.0, 1000, 6);
    m_bar->setCurrentIndex(0);
    // The rightmost of six (166 each) goes: nothing can slide in, so the five left are
    // fitted into the strip (1000) at once: 200 each.
    CloseByButton(6);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(200, 5));
    QCOMPARE(m_bar->Content()->width(), 1000);
    QCOMPARE(m_bar->ScrollOffset(), 0);
    // Then the next rightmost: 1000 / 4 is capped at the maximum.
    CloseByButton(5);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(224, 4));
}

void TstBrowserTabBarExClosing::closeLastTabOfAll()
{
    MakeBar(1.0, 1000, 1);
    m_bar->setCurrentIndex(1);
    CloseByButton(1);
    QCOMPARE(m_bar->count(), 1);
    QCOMPARE(m_bar->currentIndex(), 0);
    // The home tab has no close button; a double click asks the same.
    CloseByButton(0);
    QCOMPARE(m_bar->count(), 0);
    QCOMPARE(m_bar->currentIndex(), -1);
    // An empty bar in closing mode: the delay still ends it quietly.
    Leave(true);
    m_bar->SlotDelayTimeout();
    QCOMPARE(m_bar->addTab(Web(QStringLiteral("again"))), 0);
}

void TstBrowserTabBarExClosing::leaveEndsClosingAfterDelayEvenIfPointerReturns()
{
    MakeBar(1.0, 1000, 6);
    m_bar->setCurrentIndex(6);
    CloseByButton(3);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(166, 5));

    QElapsedTimer elapsed;
    elapsed.start();
    Leave(true);
    // The pointer comes straight back: the relayout happens anyway.
    QCursor::setPos(Inside());
    KelTest::SendEnter(m_bar);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(166, 5));
    QTRY_COMPARE(m_bar->ScrollingWidths(), Repeat(200, 5));
    QVERIFY2(elapsed.elapsed() >= 180, qPrintable(QString::number(elapsed.elapsed())));
    QCOMPARE(m_bar->Content()->width(), 1000);
    // Closing mode is over: the next removal lays out at once.
    m_bar->removeTab(1);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(224, 4));
}

void TstBrowserTabBarExClosing::leaveOverTheBarStartsNothing()
{
    MakeBar(1.0, 1000, 6);
    m_bar->setCurrentIndex(6);
    CloseByButton(3);
    // A leave while the pointer is still over the bar (it moved onto a child).
    Leave(false);
    QTest::qWait(150);
    QElapsedTimer elapsed;
    elapsed.start();
    Leave(true);
    QTRY_COMPARE(m_bar->ScrollingWidths(), Repeat(200, 5));
    // Counted from the real leave, not from the first one.
    QVERIFY2(elapsed.elapsed() >= 180, qPrintable(QString::number(elapsed.elapsed())));
}

void TstBrowserTabBarExClosing::leaveOutsideClosingStartsNothing()
{
    MakeBar(1.0, 1000, 6);
    Leave(true);
    m_bar->TabButton(2)->setFixedSize(10, 10);
    QTest::qWait(260);
    // No relayout came: the size set by hand is still there.
    QCOMPARE(m_bar->TabButton(2)->size(), QSize(10, 10));
}

void TstBrowserTabBarExClosing::delayTimeoutEndsClosing()
{
    MakeBar(1.5, 1000, 6);
    m_bar->setCurrentIndex(6);
    CloseByButton(3);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(250, 5));
    m_bar->SlotDelayTimeout();
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(300, 5));
    QCOMPARE(m_bar->Content()->width(), 1500);
    // A close by the host alone is laid out at once now.
    m_bar->removeTab(1);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(336, 4));
}

void TstBrowserTabBarExClosing::resizeDuringClosingRelayoutsButStaysClosing()
{
    MakeBar(1.0, 1000, 6);
    m_window->show(); // a hidden widget gets its resize event only when shown
    m_bar->setCurrentIndex(6);
    CloseByButton(3);
    m_bar->resize(BarWidthFor(1200), m_bar->height());
    // A resize lays out at once ...
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(224, 5));
    m_bar->resize(BarWidthFor(800), m_bar->height());
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(160, 5));
    QCOMPARE(m_bar->Content()->width(), 800);
    // ... and closing mode goes on: the next close freezes the widths again.
    CloseByButton(2);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(160, 4));
    QCOMPARE(m_bar->Content()->width(), 640);
    m_bar->AdjustForDpi();
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(200, 4));
}

void TstBrowserTabBarExClosing::insertDuringClosingRelayouts()
{
    MakeBar(1.0, 1000, 6);
    m_bar->setCurrentIndex(6);
    CloseByButton(3);
    m_bar->addTab(Web(QStringLiteral("new")));
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(166, 6));
    QCOMPARE(m_bar->ScrollingXs(), Running(Repeat(166, 6)));
    QCOMPARE(m_bar->Content()->width(), 1000);
}

void TstBrowserTabBarExClosing::closeRequestUnansweredKeepsLayout()
{
    MakeBar(1.0, 1000, 6);
    disconnect(m_bar, &BrowserTabBarEx::tabCloseRequested, nullptr, nullptr);
    QSignalSpy requested(m_bar, &BrowserTabBarEx::tabCloseRequested);
    CloseByButton(3);
    QCOMPARE(requested.count(), 1);
    QCOMPARE(requested.at(0).at(0).toInt(), 3);
    QCOMPARE(m_bar->count(), 7);
    QCOMPARE(m_bar->ScrollingWidths(), Repeat(166, 6));
}

void TstBrowserTabBarExClosing::removeTabInsideCloseRequestedKeepsWidths()
{
    // The usual host: the request is answered by removeTab() before it returns, with the
    // closed tab current.
    MakeBar(1.0, 1000, 6);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_bar->setCurrentIndex(3);
    auto *close = m_bar->TabButton(3)->findChild<QWidget *>(QStringLiteral("TabButtonCloseBtnEx"));
    QVERIFY(close && close->isVisible());
    QTest::mouseClick(close, Qt::LeftButton);
    QCOMPARE(m_bar->count(), 6);
    QCOMPARE(m_bar->currentIndex(), 3);
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Home", "Tab 1", "Tab 2", "Tab 4", "Tab 5", "Tab 6"}));
    // Still 166 each, give or take the pixel that activating the neighbour handed out.
    for (int w : m_bar->ScrollingWidths())
        QVERIFY(w == 166 || w == 167);
    QCOMPARE(m_bar->Content()->width(), 834);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TstBrowserTabBarExClosing::removeOtherTabsInsideCurrentChangedWhileClosing()
{
    MakeBar(1.0, 1000, 6);
    m_bar->setCurrentIndex(6);
    TestTabBarEx *bar = m_bar;
    OnNextCurrentChanged(bar, [bar] {
        bar->removeTab(1);
        bar->insertTab(1, Web(QStringLiteral("inserted")));
    });
    // The current, rightmost tab closes: its left neighbour becomes current, whose
    // receiver changes the list before the removal goes on.
    CloseByButton(6);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"Home", "inserted", "Tab 2", "Tab 3", "Tab 4", "Tab 5"}));
    QCOMPARE(bar->currentIndex(), 5);
    for (int i = 0; i < bar->count(); ++i)
        QCOMPARE(bar->TabButton(i)->IsChecked(), i == 5);
    QCOMPARE(bar->ScrollingXs(), Running(bar->ScrollingWidths()));
}

void TstBrowserTabBarExClosing::deleteBarWhileDelayTimerRuns()
{
    MakeBar(1.0, 1000, 6);
    CloseByButton(3);
    Leave(true);
    QPointer<TestTabBarEx> guard(m_bar);
    m_window.reset();
    m_bar = nullptr;
    QVERIFY(!guard);
    QTest::qWait(300);
}

void TstBrowserTabBarExClosing::deleteBarWhileStripSlides()
{
    MakeBar(1.0, 1000, 30);
    m_bar->setCurrentIndex(30);
    QVERIFY(QMetaObject::invokeMethod(m_bar, "SlotRightArrowDoubleClicked"));
    QTRY_COMPARE(m_bar->ScrollOffset(), MinOffset());
    CloseByButton(30);
    m_window.reset();
    m_bar = nullptr;
    QTest::qWait(120);
}

void TstBrowserTabBarExClosing::deleteBarInsideCloseRequested()
{
    MakeBar(1.0, 1000, 3);
    disconnect(m_bar, &BrowserTabBarEx::tabCloseRequested, nullptr, nullptr);
    connect(m_bar, &BrowserTabBarEx::tabCloseRequested, this, [this](int) { m_window.reset(); });
    BrowserTabButtonEx *button = m_bar->TabButton(2);
    QPointer<TestTabBarEx> guard(m_bar);
    m_bar = nullptr;
    QVERIFY(QMetaObject::invokeMethod(button, "SlotCloseClicked"));
    QVERIFY(!guard);
}

KELTAB_TEST_MAIN(TstBrowserTabBarExClosing)
#include "tst_browsertabbarexclosing.moc"
