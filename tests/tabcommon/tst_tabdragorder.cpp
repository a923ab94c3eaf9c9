// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "tabdragorder_p.h"

#include <climits>
#include <utility>

class TstTabDragOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void target_data();
    void target();
    void acceptsStdPairSpans();
};

void TstTabDragOrder::target_data()
{
    QTest::addColumn<QList<int>>("xs");
    QTest::addColumn<QList<int>>("widths");
    QTest::addColumn<int>("dragged");
    QTest::addColumn<int>("firstIndex");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("stripWidth");
    QTest::addColumn<int>("expected");

    // One fixed tab (index 0, in the fixed area's own coordinates, which overlap the
    // strip's) and three scrolling tabs of 150 at x 0, 150, 300; firstIndex 1.
    const QList<int> fixedXs{0, 0, 150, 300};
    const QList<int> fixedWs{120, 150, 150, 150};
    QTest::newRow("worked example: left 250 keeps its place")
        << fixedXs << fixedWs << 3 << 1 << 250 << 450 << -1;
    QTest::newRow("worked example: left 200 takes index 2")
        << fixedXs << fixedWs << 3 << 1 << 200 << 450 << 2;
    QTest::newRow("worked example: left 40 takes index 1")
        << fixedXs << fixedWs << 3 << 1 << 40 << 450 << 1;
    QTest::newRow("first third boundary included: left 50 takes index 1")
        << fixedXs << fixedWs << 3 << 1 << 50 << 450 << 1;
    QTest::newRow("just right of the first third: left 51 takes index 2")
        << fixedXs << fixedWs << 3 << 1 << 51 << 450 << 2;
    QTest::newRow("to the start: left 0 goes to firstIndex")
        << fixedXs << fixedWs << 3 << 1 << 0 << 450 << 1;
    QTest::newRow("past the start: left -30 goes to firstIndex")
        << fixedXs << fixedWs << 3 << 1 << -30 << 450 << 1;
    QTest::newRow("at the start already: tab at firstIndex stays")
        << fixedXs << fixedWs << 1 << 1 << 0 << 450 << -1;
    QTest::newRow("moving right, short of two thirds: stays")
        << fixedXs << fixedWs << 1 << 1 << 99 << 450 << -1;
    QTest::newRow("moving right, exactly two thirds: takes index 2")
        << fixedXs << fixedWs << 1 << 1 << 100 << 450 << 2;
    QTest::newRow("moving right over the last: two thirds into it")
        << fixedXs << fixedWs << 1 << 1 << 250 << 450 << 3;
    QTest::newRow("moving right over the last: short of two thirds")
        << fixedXs << fixedWs << 1 << 1 << 249 << 450 << 2;
    QTest::newRow("to the end: right edge at the strip width")
        << fixedXs << fixedWs << 1 << 1 << 300 << 450 << 3;
    QTest::newRow("past the end: right edge beyond the strip width")
        << fixedXs << fixedWs << 2 << 1 << 320 << 450 << 3;
    QTest::newRow("at the end already: last tab stays")
        << fixedXs << fixedWs << 3 << 1 << 300 << 450 << -1;

    // No fixed tab, firstIndex 0: three tabs of 150.
    const QList<int> xs{0, 150, 300};
    const QList<int> ws{150, 150, 150};
    QTest::newRow("firstIndex 0: over tab 0 inside the strip, target 0 refused")
        << xs << ws << 1 << 0 << 10 << 450 << -1;
    QTest::newRow("firstIndex 0: on tab 0's first third boundary, refused")
        << xs << ws << 1 << 0 << 50 << 450 << -1;
    QTest::newRow("firstIndex 0: right of tab 0's first third, own index")
        << xs << ws << 1 << 0 << 100 << 450 << -1;
    QTest::newRow("firstIndex 0: left edge on tab 0's right end, own index")
        << xs << ws << 1 << 0 << 150 << 450 << -1;
    QTest::newRow("firstIndex 0: left 0 goes to index 0")
        << xs << ws << 1 << 0 << 0 << 450 << 0;
    QTest::newRow("firstIndex 0: last tab in tab 0's first third, refused")
        << xs << ws << 2 << 0 << 40 << 450 << -1;
    QTest::newRow("firstIndex 0: last tab right of tab 0's first third takes index 1")
        << xs << ws << 2 << 0 << 60 << 450 << 1;
    QTest::newRow("firstIndex 0: last tab to the start takes index 0")
        << xs << ws << 2 << 0 << -1 << 450 << 0;
    QTest::newRow("firstIndex 1: second tab to the start stays")
        << xs << ws << 1 << 1 << 0 << 450 << -1;
    QTest::newRow("firstIndex 1: last tab to the start takes index 1")
        << xs << ws << 2 << 1 << 0 << 450 << 1;
    QTest::newRow("tab 0 moving right short of two thirds stays")
        << xs << ws << 0 << 0 << 40 << 450 << -1;
    QTest::newRow("tab 0 moving right two thirds into tab 1")
        << xs << ws << 0 << 0 << 100 << 450 << 1;

    // Unequal widths; every division truncates: 100 / 3 = 33, 2 * 100 / 3 = 66.
    const QList<int> mixedXs{0, 100, 200, 260};
    const QList<int> mixedWs{100, 100, 60, 140};
    QTest::newRow("truncated third: left 133 takes tab 1's place")
        << mixedXs << mixedWs << 3 << 0 << 133 << 400 << 1;
    QTest::newRow("truncated third: left 134 takes the next place")
        << mixedXs << mixedWs << 3 << 0 << 134 << 400 << 2;
    QTest::newRow("truncated two thirds: right 165 stays")
        << mixedXs << mixedWs << 0 << 0 << 65 << 400 << -1;
    QTest::newRow("truncated two thirds: right 166 takes index 1")
        << mixedXs << mixedWs << 0 << 0 << 66 << 400 << 1;
    QTest::newRow("narrow neighbour: right 240 takes index 2")
        << mixedXs << mixedWs << 1 << 0 << 140 << 400 << 2;

    // Gaps between spans: nothing spans either edge.
    const QList<int> gapXs{0, 150, 300};
    const QList<int> gapWs{100, 100, 100};
    QTest::newRow("edges in gaps: no change")
        << gapXs << gapWs << 2 << 0 << 110 << 400 << -1;

    // A tab below firstIndex (a scrolling bar lets one be dragged) never lands below it,
    // neither past a neighbour below firstIndex nor by the drag-to-end rule.
    QTest::newRow("below firstIndex: covering a neighbour below it keeps its place")
        << xs << ws << 0 << 2 << 110 << 450 << -1;
    QTest::newRow("below firstIndex: covering the tab at firstIndex takes it")
        << xs << ws << 0 << 2 << 260 << 450 << 2;
    QTest::newRow("below firstIndex: to the end with nothing at or past firstIndex keeps its place")
        << xs << ws << 0 << 3 << 300 << 450 << -1;

    // Out of range.
    QTest::newRow("dragged -1") << xs << ws << -1 << 0 << 10 << 450 << -1;
    QTest::newRow("dragged past the end") << xs << ws << 3 << 0 << 10 << 450 << -1;
    QTest::newRow("single tab to the start") << QList<int>{0} << QList<int>{150} << 0 << 0 << 0 << 150 << -1;
    QTest::newRow("single tab to the end") << QList<int>{0} << QList<int>{150} << 0 << 0 << 10 << 150 << -1;
}

void TstTabDragOrder::target()
{
    QFETCH(QList<int>, xs);
    QFETCH(QList<int>, widths);
    QFETCH(int, dragged);
    QFETCH(int, firstIndex);
    QFETCH(int, left);
    QFETCH(int, stripWidth);
    QFETCH(int, expected);
    QCOMPARE(xs.size(), widths.size());

    const int count = xs.size();
    const int draggedWidth = dragged >= 0 && dragged < count ? widths.at(dragged) : 150;
    int lowestAsked = INT_MAX;
    bool askedForDragged = false;
    auto span = [&](int j) {
        lowestAsked = qMin(lowestAsked, j);
        askedForDragged = askedForDragged || j == dragged;
        return qMakePair(xs.at(j), widths.at(j));
    };

    const int result = TabDragOrder::Target(count, dragged, firstIndex, left, left + draggedWidth,
                                            stripWidth, span);
    QCOMPARE(result, expected);
    // Tabs below firstIndex lie in other coordinates and are never compared, nor is
    // the dragged tab with itself.
    QVERIFY2(lowestAsked == INT_MAX || lowestAsked >= firstIndex, qPrintable(QString::number(lowestAsked)));
    QVERIFY(!askedForDragged);
}

void TstTabDragOrder::acceptsStdPairSpans()
{
    auto span = [](int j) { return std::make_pair(j * 150, 150); };
    QCOMPARE(TabDragOrder::Target(3, 2, 0, 200, 350, 450, span), 1);
    QCOMPARE(TabDragOrder::Target(3, 0, 0, 200, 350, 450, span), 1);
    QCOMPARE(TabDragOrder::Target(3, 0, 0, 250, 400, 450, span), 2);
}

KELTAB_TEST_MAIN(TstTabDragOrder)
#include "tst_tabdragorder.moc"
