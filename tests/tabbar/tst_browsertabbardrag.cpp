// SPDX-License-Identifier: MIT
// The classic tab strip: reordering tabs by dragging, through the bar's slots.

#include "keltabtest.h"
#include "classicbartest.h"

#include <QRandomGenerator>

using namespace ClassicTest;

class TstBrowserTabBarDrag : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

private Q_SLOTS:
    void init();
    void cleanup();

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
    void heldTabKeepsItsPlaceWhenTheStripChanges_data();
    void heldTabKeepsItsPlaceWhenTheStripChanges();

private:
    std::unique_ptr<Environment> m_env;
};

void TstBrowserTabBarDrag::init()
{
    m_env = std::make_unique<Environment>();
}

void TstBrowserTabBarDrag::cleanup()
{
    FlushDeletes();
    m_env.reset();
}


// --- drag reordering ------------------------------------------------------------

void TstBrowserTabBarDrag::pressWithoutMoveChangesNothing()
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

void TstBrowserTabBarDrag::dragSecondOfThreeLeft_data()
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

void TstBrowserTabBarDrag::dragSecondOfThreeLeft()
{
    QFETCH(int, left);
    QFETCH(int, expectedIndex);
    auto bar = MakeBar(800, 3);
    const TabDataPtr dragged = bar->GetTabData(1);
    SlotDrag drag(bar.get(), 1);
    drag.MoveLeftEdgeTo(left);
    QCOMPARE(KelTest::LogicalX(drag.Button()), qMax(left, 0));
    QCOMPARE(bar->GetIndexByTabData(dragged), expectedIndex);
    QCOMPARE(bar->currentIndex(), expectedIndex);
    drag.Release();
    QCOMPARE(bar->GetIndexByTabData(dragged), expectedIndex);
    QCOMPARE(Xs(bar.get()), QList<int>({0, 162, 324}));
    QVERIFY(OnlyCheckedIs(bar.get(), expectedIndex));
}

void TstBrowserTabBarDrag::dragRightToTheEndMovesToLast()
{
    auto bar = MakeBar(800, 3);
    const TabDataPtr dragged = bar->GetTabData(0);
    SlotDrag drag(bar.get(), 0);
    // Past both neighbours but short of the strip's end: no target.
    drag.MoveLeftEdgeTo(500);
    QCOMPARE(bar->GetIndexByTabData(dragged), 0);
    // The strip spans the whole bar during a drag; its end is 800.
    drag.MoveRightEdgeTo(900);
    QCOMPARE(KelTest::LogicalX(drag.Button()), 800 - 164);
    QCOMPARE(bar->GetIndexByTabData(dragged), 2);
    QCOMPARE(bar->currentIndex(), 2);
    drag.Release();
    QCOMPARE(bar->GetAllTabTitles(), QStringList({QStringLiteral("t1"), QStringLiteral("t2"), QStringLiteral("t0")}));
}

void TstBrowserTabBarDrag::dragThresholds_data()
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

void TstBrowserTabBarDrag::dragThresholds()
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

void TstBrowserTabBarDrag::firstIndexOneProtectsIndexZero()
{
    auto bar = MakeBar(800, 3);
    bar->SetFirstIndex(1);
    QCOMPARE(bar->GetFirstIndex(), 1);
    const TabDataPtr first = bar->GetTabData(0);
    {
        SlotDrag drag(bar.get(), 0);
        drag.MoveRightEdgeTo(900);
        drag.MoveLeftEdgeTo(300);
        QCOMPARE(KelTest::LogicalX(drag.Button()), 0);
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

void TstBrowserTabBarDrag::negativeFirstIndexActsAsZero()
{
    auto bar = MakeBar(800, 3);
    bar->SetFirstIndex(-3);
    SlotDrag drag(bar.get(), 2);
    drag.MoveLeftEdgeTo(0);
    QCOMPARE(bar->GetTabData(0)->GetTitle(), QStringLiteral("t2"));
    QCOMPARE(bar->currentIndex(), 0);
    drag.Release();
}

void TstBrowserTabBarDrag::dragHidesNewTabButtonAndWidensStrip()
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
    QCOMPARE(KelTest::LogicalX(drag.Button()), 170);
    drag.Release();
    QVERIFY(!newTab->isHidden());
    QCOMPARE(Content(bar.get())->width(), 486);
    QCOMPARE(KelTest::LogicalX(drag.Button()), 162);
}

void TstBrowserTabBarDrag::hideNewTabButtonSurvivesDrags()
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

void TstBrowserTabBarDrag::tabButtonMovedFollowsEachHandledMove()
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

void TstBrowserTabBarDrag::pressedTabRemovedDuringDrag()
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

void TstBrowserTabBarDrag::heldTabKeepsItsPlaceWhenTheStripChanges_data()
{
    QTest::addColumn<int>("tabs");
    // What adding a tab changes, so that each row is sure to test what it says.
    QTest::addColumn<bool>("tabsResized");
    QTest::addColumn<bool>("stripResized");
    QTest::newRow("strip wider") << 2 << false << true;
    QTest::newRow("tabs narrower") << 6 << true << false;
}

void TstBrowserTabBarDrag::heldTabKeepsItsPlaceWhenTheStripChanges()
{
    QFETCH(int, tabs);
    QFETCH(bool, tabsResized);
    QFETCH(bool, stripResized);
    auto bar = MakeBar(800, tabs);
    SlotDrag drag(bar.get(), 1);
    BrowserTabButton *held = drag.Button();
    QVERIFY(held->IsPressed());
    // The edge the tab starts at on the screen: its right one when mirrored.
    const auto startEdge = [held] { return held->mapToGlobal(QPoint(held->isRightToLeft() ? held->width() : 0, 0)); };
    const QPoint before = startEdge();
    const int width = held->width();
    const int stripWidth = held->parentWidget()->width();
    bar->addTab(MakeTab(QStringLiteral("new")));
    QCOMPARE(held->width() != width, tabsResized);
    QCOMPARE(held->parentWidget()->width() != stripWidth, stripResized);
    // The other tabs take their new places; the held one stays under the pointer.
    QCOMPARE(startEdge(), before);
    drag.Release();
}

KELTAB_TEST_MAIN(TstBrowserTabBarDrag)
#include "tst_browsertabbardrag.moc"
