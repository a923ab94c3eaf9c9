// SPDX-License-Identifier: MIT
// BrowserTabBarEx drag reordering driven through the bar's slots and the popup's
// signals: the thresholds of the shared order rule, the gap, the floating tab, the
// current index, the separators, TabButtonMoved() and hostile call orders mid-drag.
// The pointer is the X server's cursor, which the bar reads; the popup that takes the
// mouse needs a window system, hence Xvfb.

#include "keltabtest.h"

#include "barwindowtest.h"
#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "browsertabmoveproxyex.h"
#include "dpitool.h"
#include "tabbarextestbar.h"

#include <QPointer>

#include <memory>

using namespace TabTest;

namespace {

// Counts the times the watched widget changes its parent.
class ParentWatcher : public QObject
{
public:
    explicit ParentWatcher(QWidget *watched)
        : QObject(watched)
    {
        watched->installEventFilter(this);
    }
    int changes = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::ParentChange)
            ++changes;
        return false;
    }
};

// Where the press happens, with room to both sides on the screen; only differences of
// the cursor's x matter to the bar.
const QPoint kPress(800, 500);

} // namespace

class TstBrowserTabBarExDrag : public BarWindowTest
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

private Q_SLOTS:
    void workedExampleLeft_data();
    void workedExampleLeft();
    void dragRightNeedsTwoThirds_data();
    void dragRightNeedsTwoThirds();
    void dragLeftNeedsTwoThirds_data();
    void dragLeftNeedsTwoThirds();
    void targetZeroOnlyFromTheStart();
    void veryStartGoesToFirstIndex();
    void veryEndGoesToLast();
    void tabBelowFirstIndexNeverLandsBelowIt();
    void followsPointerClampedToViewport();
    void floatsInViewportAndDropsIntoSlot();
    void pressWithoutMotionStaysInStrip();
    void tabButtonMovedOncePerDrag();
    void currentFollowsWithoutSignal();
    void separatorsDuringDrag();
    void sortWithoutPressedTabDoesNothing();
    void fixedTabsDoNotDrag();
    void secondPressIsIgnored();
    void edgeScrollInOverflow();
    void noEdgeScrollWithoutOverflow();
    void hoverSeparators_data();
    void hoverSeparators();

    void pressedTabRemovedDuringDrag();
    void pressedTabRemovedBeforeFirstMove();
    void pressedTabRemovedInsideCurrentChanged();
    void otherTabsChangedDuringDrag();
    void hostSelectsAnotherTabDuringDrag();
    void deleteBarDuringDrag();
    void deleteBarInsideTabButtonMoved();

private:
    QPointer<TestTabBarEx> m_bar;

    TestTabBarEx *MakeBar(double scale, int designAvailable, int scrolling, int fixedCount = 1);
    static BrowserTabMoveProxyEx *Proxy()
    {
        return qobject_cast<BrowserTabMoveProxyEx *>(QApplication::activePopupWidget());
    }
    // What a left press on the tab's button emits.
    void Press(int index, const QPoint &cursor = kPress);
    // Moves the pointer so that the dragged tab's left edge lies at @p left in the strip.
    void MoveLeftEdgeTo(int left);
    void MoveCursor(const QPoint &cursor);
    void Release();
    int m_pressLeft = 0;

    void CloseLeftovers() override;
};

// A test may stop a drag halfway; the popup it leaves is the drag's.
void TstBrowserTabBarExDrag::CloseLeftovers()
{
    if (BrowserTabMoveProxyEx *proxy = Proxy())
        proxy->hide();
}

TestTabBarEx *TstBrowserTabBarExDrag::MakeBar(double scale, int designAvailable, int scrolling, int fixedCount)
{
    DpiTool::SetScaleFactor(scale);
    m_bar = NewBarInWindow<TestTabBarEx>(designAvailable, fixedCount > 0 ? 84 : 0);
    m_bar->fixedCount = fixedCount;
    m_bar->SetFirstIndex(fixedCount);
    Fill(*m_bar, scrolling);
    return m_bar;
}

void TstBrowserTabBarExDrag::Press(int index, const QPoint &cursor)
{
    BrowserTabButtonEx *button = m_bar->TabButton(index);
    QVERIFY(button);
    // The left press selects the tab and asks for a drag.
    PressAt(button, cursor);
    // Where the bar found the button when the drag began.
    m_pressLeft = KelTest::LogicalX(button) + m_bar->ScrollOffset();
}

// Positions are logical about the press: right to left, 30 to the right of kPress is
// 30 towards the end, which is to the left on the screen.
void TstBrowserTabBarExDrag::MoveCursor(const QPoint &cursor)
{
    QVERIFY(Proxy());
    QVERIFY(MoveHeldTo(QPoint(kPress.x() + KelTest::Forward(m_bar, cursor.x() - kPress.x()), cursor.y())));
}

void TstBrowserTabBarExDrag::MoveLeftEdgeTo(int left)
{
    // The button's x in the viewport is the cursor's x plus the press offset.
    MoveCursor(QPoint(kPress.x() + left + m_bar->ScrollOffset() - m_pressLeft, kPress.y()));
}

void TstBrowserTabBarExDrag::Release()
{
    BrowserTabMoveProxyEx *proxy = Proxy();
    QVERIFY(proxy);
    proxy->hide();
}

void TstBrowserTabBarExDrag::workedExampleLeft_data()
{
    QTest::addColumn<double>("scale");
    QTest::newRow("1.0") << 1.0;
    QTest::newRow("1.5") << 1.5;
}

void TstBrowserTabBarExDrag::workedExampleLeft()
{
    // One fixed tab, firstIndex 1, three tabs 150 wide at x = 0, 150 and 300 (at 1.5
    // every number times 1.5). The tab at index 3 is dragged left.
    QFETCH(double, scale);
    const auto s = [scale](int n) { return int(n * scale); };
    MakeBar(scale, 450, 3);
    QCOMPARE(m_bar->ScrollingWidths(), QList<int>({s(150), s(150), s(150)}));
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, s(150), s(300)}));
    const TabDataPtr dragged = m_bar->GetTabData(3);
    Press(3);
    QCOMPARE(m_bar->currentIndex(), 3);

    // Left edge 250: button 2 (150 to 300) spans it and 250 > 150 + 50: target 3 = p.
    MoveLeftEdgeTo(s(250));
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(3)), s(250));
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 3);
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, s(150), s(250)}));
    // Left edge 200: 200 > 200 fails, target 2.
    MoveLeftEdgeTo(s(200));
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 2);
    QCOMPARE(m_bar->currentIndex(), 2);
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Home", "Tab 1", "Tab 3", "Tab 2"}));
    // The others close up around the gap at 150.
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(1)), 0);
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(3)), s(300));
    // Left edge 40: button 1 spans it, 40 > 0 + 50 fails, target 1.
    MoveLeftEdgeTo(s(40));
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 1);
    QCOMPARE(m_bar->currentIndex(), 1);
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Home", "Tab 3", "Tab 1", "Tab 2"}));
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(2)), s(150));
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(3)), s(300));

    Release();
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, s(150), s(300)}));
    QCOMPARE(m_bar->TabButton(1)->parentWidget(), m_bar->Content());
    QCOMPARE(m_bar->movedCount, 1);
}

void TstBrowserTabBarExDrag::dragRightNeedsTwoThirds_data()
{
    QTest::addColumn<int>("right");    // the dragged tab's right edge in the strip
    QTest::addColumn<int>("expected"); // its index afterwards
    // Tab 1 (0 to 150) dragged right over tab 2 (150 to 300): two thirds of it end at 250.
    QTest::newRow("right 200, a third") << 200 << 1;
    QTest::newRow("right 249, a pixel short") << 249 << 1;
    QTest::newRow("right 250, two thirds") << 250 << 2;
    QTest::newRow("right 300, all of it") << 300 << 2;
    // Over tab 3 (300 to 450): two thirds at 400; the strip ends at 450.
    QTest::newRow("right 399") << 399 << 2;
    QTest::newRow("right 400") << 400 << 3;
    QTest::newRow("right 450, the very end") << 450 << 3;
}

void TstBrowserTabBarExDrag::dragRightNeedsTwoThirds()
{
    QFETCH(int, right);
    QFETCH(int, expected);
    MakeBar(1.0, 450, 3);
    const TabDataPtr dragged = m_bar->GetTabData(1);
    Press(1);
    MoveLeftEdgeTo(right - 150);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), expected);
    QCOMPARE(m_bar->currentIndex(), expected);
    Release();
    QCOMPARE(m_bar->GetIndexByTabData(dragged), expected);
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, 150, 300}));
}

void TstBrowserTabBarExDrag::dragLeftNeedsTwoThirds_data()
{
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("expected");
    // Tab 3 (300 to 450) dragged left over tab 2 (150 to 300): its first third ends at 200.
    QTest::newRow("left 251") << 251 << 3;
    QTest::newRow("left 201, a pixel short") << 201 << 3;
    QTest::newRow("left 200, two thirds") << 200 << 2;
    QTest::newRow("left 150") << 150 << 2;
    // Over tab 1 (0 to 150): first third ends at 50.
    QTest::newRow("left 51") << 51 << 2;
    QTest::newRow("left 50") << 50 << 1;
    QTest::newRow("left 1") << 1 << 1;
}

void TstBrowserTabBarExDrag::dragLeftNeedsTwoThirds()
{
    QFETCH(int, left);
    QFETCH(int, expected);
    MakeBar(1.0, 450, 3);
    const TabDataPtr dragged = m_bar->GetTabData(3);
    Press(3);
    MoveLeftEdgeTo(left);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), expected);
    Release();
}

void TstBrowserTabBarExDrag::targetZeroOnlyFromTheStart()
{
    // No fixed tabs, firstIndex 0: tabs at 0, 150, 300.
    MakeBar(1.0, 450, 3, 0);
    m_bar->SetFirstIndex(0);
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, 150, 300}));
    const TabDataPtr dragged = m_bar->GetTabData(2);
    Press(2);
    // Over the first third of tab 0: the target would be 0, which is refused.
    MoveLeftEdgeTo(40);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 2);
    MoveLeftEdgeTo(1);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 2);
    // Only the very start puts it first.
    MoveLeftEdgeTo(0);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 0);
    QCOMPARE(m_bar->currentIndex(), 0);
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Tab 3", "Tab 1", "Tab 2"}));
    // Dragged right again, it leaves index 0 once its right edge (270) covers two
    // thirds of its neighbour (150 to 300).
    MoveLeftEdgeTo(120);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 1);
    Release();
}

void TstBrowserTabBarExDrag::veryStartGoesToFirstIndex()
{
    MakeBar(1.0, 600, 4);
    m_bar->SetFirstIndex(2);
    const TabDataPtr dragged = m_bar->GetTabData(4);
    Press(4);
    // Over tab 1, left of firstIndex: it is not a place for the tab.
    MoveLeftEdgeTo(10);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 4);
    // Against the start: firstIndex.
    MoveLeftEdgeTo(-50); // clamped to 0
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(2)), 0);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 2);
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Home", "Tab 1", "Tab 4", "Tab 2", "Tab 3"}));
    Release();
    // A tab at or left of firstIndex is not moved by the start rule.
    Press(2);
    MoveLeftEdgeTo(0);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 2);
    Release();
}

void TstBrowserTabBarExDrag::veryEndGoesToLast()
{
    MakeBar(1.0, 600, 4);
    const TabDataPtr dragged = m_bar->GetTabData(1);
    Press(1);
    MoveLeftEdgeTo(600); // clamped to 450: the right edge meets the strip's end
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(4)), 450);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 4);
    QCOMPARE(m_bar->currentIndex(), 4);
    // Already last: nothing more.
    MoveLeftEdgeTo(449);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 4);
    Release();
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Home", "Tab 2", "Tab 3", "Tab 4", "Tab 1"}));
}

// A scrolling tab left of the first index may be dragged; it lands at the first index
// or beyond, never on a neighbour below it, nor at the end when the end lies below it.
void TstBrowserTabBarExDrag::tabBelowFirstIndexNeverLandsBelowIt()
{
    MakeBar(1.0, 600, 4);
    m_bar->SetFirstIndex(3);
    const TabDataPtr dragged = m_bar->GetTabData(1);
    Press(1);
    MoveLeftEdgeTo(110); // the right edge covers two thirds of tab 2, below the first index
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 1);
    MoveLeftEdgeTo(260); // two thirds of tab 3, the first index
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 3);
    Release();
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Home", "Tab 2", "Tab 3", "Tab 1", "Tab 4"}));

    m_bar->SetFirstIndex(5);
    Press(1);
    MoveLeftEdgeTo(600); // the very end, index 4, lies below the first index
    QCOMPARE(m_bar->GetIndexByTabData(m_bar->GetTabData(1)), 1);
    Release();
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Home", "Tab 2", "Tab 3", "Tab 1", "Tab 4"}));
}

void TstBrowserTabBarExDrag::followsPointerClampedToViewport()
{
    MakeBar(1.0, 600, 4);
    Press(2);
    BrowserTabButtonEx *button = m_bar->TabButton(2);
    MoveCursor(kPress + QPoint(30, 0));
    QCOMPARE(KelTest::LogicalPos(button), QPoint(150 + 30, m_bar->ButtonTop()));
    // The pointer's height does not matter.
    MoveCursor(kPress + QPoint(31, 77));
    QCOMPARE(KelTest::LogicalPos(button), QPoint(150 + 31, m_bar->ButtonTop()));
    MoveCursor(kPress + QPoint(-1000, 0));
    QCOMPARE(KelTest::LogicalX(button), 0);
    MoveCursor(kPress + QPoint(1000, 0));
    QCOMPARE(KelTest::LogicalX(button), m_bar->Viewport()->width() - button->width());
    Release();
}

void TstBrowserTabBarExDrag::floatsInViewportAndDropsIntoSlot()
{
    MakeBar(1.0, 600, 4);
    BrowserTabButtonEx *button = m_bar->TabButton(2);
    ParentWatcher watcher(button);
    Press(2);
    QVERIFY(Proxy());
    QCOMPARE(button->parentWidget(), m_bar->Content());
    QVERIFY(!button->IsPressed());
    MoveCursor(kPress + QPoint(20, 0));
    QCOMPARE(button->parentWidget(), m_bar->Viewport());
    QVERIFY(button->IsPressed());
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonPressedEx"));
    QVERIFY(!button->isHidden());
    // Above the content strip.
    QCOMPARE(m_bar->Viewport()->children().last(), static_cast<QObject *>(button));
    // The others keep their slots, the dragged one's slot stays empty.
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(1)), 0);
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(3)), 300);
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(4)), 450);
    MoveCursor(kPress + QPoint(40, 0));
    QCOMPARE(watcher.changes, 1);

    Release();
    QVERIFY(!Proxy());
    QCOMPARE(button->parentWidget(), m_bar->Content());
    QCOMPARE(watcher.changes, 2);
    QVERIFY(!button->IsPressed());
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonFrontEx"));
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, 150, 300, 450}));
    QVERIFY(!button->isHidden());
    // The inner widgets were kept all along.
    QVERIFY(button->findChild<QWidget *>(QStringLiteral("TabButtonTextEx")));
}

void TstBrowserTabBarExDrag::pressWithoutMotionStaysInStrip()
{
    MakeBar(1.0, 600, 4);
    BrowserTabButtonEx *button = m_bar->TabButton(3);
    ParentWatcher watcher(button);
    Press(3);
    QVERIFY(Proxy());
    Release();
    QCOMPARE(watcher.changes, 0);
    QCOMPARE(button->parentWidget(), m_bar->Content());
    QCOMPARE(m_bar->movedCount, 1);
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, 150, 300, 450}));
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonFrontEx"));
}

void TstBrowserTabBarExDrag::tabButtonMovedOncePerDrag()
{
    MakeBar(1.0, 600, 4);
    Press(1);
    for (int left = 0; left <= 450; left += 10)
        MoveLeftEdgeTo(left);
    QCOMPARE(m_bar->movedCount, 0);
    Release();
    QCOMPARE(m_bar->movedCount, 1);
    // A stray release signal after the drag changes nothing.
    m_bar->SlotButtonRelease();
    QCOMPARE(m_bar->movedCount, 1);
    Press(2);
    MoveLeftEdgeTo(10);
    Release();
    QCOMPARE(m_bar->movedCount, 2);
}

void TstBrowserTabBarExDrag::currentFollowsWithoutSignal()
{
    MakeBar(1.0, 600, 4);
    m_bar->setCurrentIndex(1);
    QSignalSpy changed(m_bar, &BrowserTabBarEx::currentChanged);
    Press(4);
    QCOMPARE(changed.count(), 1); // the press selects the tab
    for (int left = 425; left >= 0; left -= 25) { // 450, where it lies, would be no move
        MoveLeftEdgeTo(left);
        QVERIFY(m_bar->TabButton(m_bar->currentIndex())->IsPressed());
        for (int i = 0; i < m_bar->count(); ++i)
            QCOMPARE(m_bar->TabButton(i)->IsChecked(), i == m_bar->currentIndex());
    }
    QCOMPARE(m_bar->currentIndex(), 1);
    Release();
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_bar->currentIndex(), 1);
    QCOMPARE(m_bar->GetCurrentTabData()->GetTitle(), QStringLiteral("Tab 4"));
}

void TstBrowserTabBarExDrag::separatorsDuringDrag()
{
    MakeBar(1.0, 600, 4);
    Press(3);
    MoveLeftEdgeTo(290);
    // The dragged tab and its left neighbour hide theirs, every other tab shows its own
    // (the button still hides the separator of a current or hovered tab itself).
    QVERIFY(!m_bar->TabButton(3)->IsSeparatorVisible());
    QVERIFY(!m_bar->TabButton(2)->IsSeparatorVisible());
    QVERIFY(m_bar->TabButton(1)->IsSeparatorVisible());
    QVERIFY(m_bar->TabButton(4)->IsSeparatorVisible());
    MoveLeftEdgeTo(100); // to index 2
    QCOMPARE(m_bar->currentIndex(), 2);
    QVERIFY(!m_bar->TabButton(1)->IsSeparatorVisible());
    QVERIFY(m_bar->TabButton(3)->IsSeparatorVisible());
    QVERIFY(m_bar->TabButton(4)->IsSeparatorVisible());
    Release();
    // Back to the rule of the current tab.
    QVERIFY(!m_bar->TabButton(1)->IsSeparatorVisible());
    QVERIFY(!m_bar->TabButton(2)->IsSeparatorVisible());
    QVERIFY(m_bar->TabButton(3)->IsSeparatorVisible());
}

void TstBrowserTabBarExDrag::sortWithoutPressedTabDoesNothing()
{
    MakeBar(1.0, 600, 4);
    const QStringList titles = m_bar->GetAllTabTitles();
    m_bar->TabButton(4)->move(0, 4);
    // A move or release without a press is ignored.
    m_bar->SlotButtonMove();
    m_bar->SlotButtonRelease();
    QCOMPARE(m_bar->GetAllTabTitles(), titles);
    QCOMPARE(m_bar->movedCount, 0);
    QCOMPARE(m_bar->TabButton(4)->parentWidget(), m_bar->Content());
}

void TstBrowserTabBarExDrag::fixedTabsDoNotDrag()
{
    MakeBar(1.0, 600, 0);
    m_bar->removeTab(0);
    // A fixed tab that is not the home page: its button asks for a drag, the bar refuses.
    m_bar->addTab(Web(QStringLiteral("pinned")));
    m_bar->addTab(Web(QStringLiteral("scrolling")));
    QCOMPARE(m_bar->TabButton(0)->parentWidget(), m_bar->FixedArea());
    Press(0);
    QVERIFY(!Proxy());
    // Nor does a tab at a scrolling index that was made for the fixed area, nor one at
    // the fixed index that was made for the strip.
    m_bar->insertTab(0, Web(QStringLiteral("first")));
    QCOMPARE(m_bar->TabButton(0)->parentWidget(), m_bar->Content());
    QCOMPARE(m_bar->TabButton(1)->parentWidget(), m_bar->FixedArea());
    Press(1);
    QVERIFY(!Proxy());
    Press(0);
    QVERIFY(!Proxy());
    Press(2);
    QVERIFY(Proxy());
    Release();
    QCOMPARE(m_bar->movedCount, 1);
    // And a call that does not come from a button.
    QVERIFY(QMetaObject::invokeMethod(m_bar, "SlotButtonPressed"));
    QVERIFY(!Proxy());
}

void TstBrowserTabBarExDrag::secondPressIsIgnored()
{
    MakeBar(1.0, 600, 4);
    Press(1);
    MoveLeftEdgeTo(20);
    BrowserTabButtonEx *first = m_bar->TabButton(1);
    Q_EMIT m_bar->TabButton(3)->SigButtonPressed();
    MoveLeftEdgeTo(30);
    QCOMPARE(KelTest::LogicalX(first), 30);
    QVERIFY(!m_bar->TabButton(3)->IsPressed());
    Release();
    QCOMPARE(m_bar->movedCount, 1);
    QCOMPARE(first->parentWidget(), m_bar->Content());
}

void TstBrowserTabBarExDrag::edgeScrollInOverflow()
{
    MakeBar(1.0, 1000, 20);
    QVERIFY(m_bar->IsOverflow());
    const int viewport = m_bar->Viewport()->width();
    const int minOffset = viewport - m_bar->Content()->width();
    const TabDataPtr dragged = m_bar->GetTabData(2);
    BrowserTabButtonEx *button = m_bar->TabButton(2);
    Press(2);
    // The press offset is 96 - 800: the pointer at 1100 puts the tab at 396, mid-viewport.
    const QPoint middle = kPress + QPoint(300, 0);
    // Against the right edge: the strip runs to its end and the tab is sorted as it goes.
    MoveCursor(kPress + QPoint(2000, 0));
    QCOMPARE(KelTest::LogicalX(button), viewport - 96);
    QTRY_COMPARE(m_bar->ScrollOffset(), minOffset);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 20);
    QCOMPARE(m_bar->currentIndex(), 20);
    // Away from the edge: nothing more.
    MoveCursor(middle);
    QCOMPARE(KelTest::LogicalX(button), 396);
    // Against the left edge: back to the start.
    MoveCursor(kPress + QPoint(-2000, 0));
    QCOMPARE(KelTest::LogicalX(button), 0);
    QTRY_COMPARE(m_bar->ScrollOffset(), 0);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 1);
    // In the middle again: a running scroll stops where it is.
    MoveCursor(kPress + QPoint(2000, 0));
    QTRY_VERIFY(m_bar->ScrollOffset() < 0);
    MoveCursor(middle);
    const int stopped = m_bar->ScrollOffset();
    QVERIFY(stopped > minOffset);
    QTest::qWait(60);
    QCOMPARE(m_bar->ScrollOffset(), stopped);
    Release();
    QCOMPARE(m_bar->ScrollOffset(), stopped);
    QCOMPARE(KelTest::LogicalX(m_bar->Content()), stopped);
    QCOMPARE(m_bar->movedCount, 1);
}

void TstBrowserTabBarExDrag::noEdgeScrollWithoutOverflow()
{
    MakeBar(1.0, 1000, 4);
    Press(2);
    MoveCursor(kPress + QPoint(2000, 0));
    QTest::qWait(60);
    QCOMPARE(m_bar->ScrollOffset(), 0);
    QCOMPARE(KelTest::LogicalX(m_bar->Content()), 0);
    Release();
}

void TstBrowserTabBarExDrag::hoverSeparators_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("hovered");
    QTest::addColumn<bool>("entering");
    QTest::addColumn<QList<bool>>("separators"); // of tabs 0 to 5 afterwards
    // Five scrolling tabs; the current one and its left neighbour hide theirs.
    QTest::newRow("enter 2, current 5") << 5 << 2 << true << QList<bool>({true, false, false, true, false, false});
    QTest::newRow("leave 2, current 5") << 5 << 2 << false << QList<bool>({true, true, true, true, false, false});
    // Left of the current tab the separator stays hidden.
    QTest::newRow("leave 3, current 4") << 4 << 3 << false << QList<bool>({true, true, true, false, false, true});
    QTest::newRow("enter 1, current 3") << 3 << 1 << true << QList<bool>({false, false, false, false, true, true});
    QTest::newRow("leave 5, current 1") << 1 << 5 << false << QList<bool>({false, false, true, true, true, true});
}

void TstBrowserTabBarExDrag::hoverSeparators()
{
    QFETCH(int, current);
    QFETCH(int, hovered);
    QFETCH(bool, entering);
    QFETCH(QList<bool>, separators);
    MakeBar(1.0, 1000, 5);
    m_bar->setCurrentIndex(current);
    m_bar->SlotHoverChanged(m_bar->GetTabData(hovered), entering);
    QList<bool> actual;
    for (int i = 0; i < m_bar->count(); ++i)
        actual << m_bar->TabButton(i)->IsSeparatorVisible();
    QCOMPARE(actual, separators);
}

void TstBrowserTabBarExDrag::pressedTabRemovedDuringDrag()
{
    MakeBar(1.0, 1000, 20);
    Press(3);
    MoveLeftEdgeTo(150);
    MoveCursor(kPress + QPoint(2000, 0)); // the edge scroll runs
    QPointer<BrowserTabButtonEx> button = m_bar->TabButton(m_bar->currentIndex());
    QVERIFY(button->IsPressed());
    m_bar->removeTab(m_bar->currentIndex());
    // The popup lets go of the mouse; the scroll stops; nobody is told of a move.
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(nullptr));
    const int offset = m_bar->ScrollOffset();
    QTest::qWait(60);
    QCOMPARE(m_bar->ScrollOffset(), offset);
    QCOMPARE(m_bar->movedCount, 0);
    QCOMPARE(m_bar->count(), 20);
    for (int i = 2; i < m_bar->count(); ++i)
        QCOMPARE(KelTest::LogicalX(m_bar->TabButton(i)), KelTest::LogicalX(m_bar->TabButton(i - 1)) + 96);
    m_bar->SlotButtonMove();
    m_bar->SlotButtonRelease();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!button);
    // The next drag works as ever.
    Press(2);
    MoveCursor(kPress + QPoint(5, 0));
    QCOMPARE(m_bar->TabButton(2)->parentWidget(), m_bar->Viewport());
    Release();
    QCOMPARE(m_bar->movedCount, 1);
}

void TstBrowserTabBarExDrag::pressedTabRemovedBeforeFirstMove()
{
    MakeBar(1.0, 600, 4);
    Press(2);
    QVERIFY(Proxy());
    m_bar->removeTab(2);
    QVERIFY(!Proxy());
    QCOMPARE(m_bar->movedCount, 0);
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, 200, 400}));
}

void TstBrowserTabBarExDrag::pressedTabRemovedInsideCurrentChanged()
{
    // A host that closes a tab as soon as it is selected: the press that selected it
    // must not start a drag of a removed tab.
    MakeBar(1.0, 600, 4);
    TestTabBarEx *bar = m_bar;
    connect(bar, &BrowserTabBarEx::currentChanged, this, [bar](int index) {
        if (index == 3)
            bar->removeTab(3);
    });
    BrowserTabButtonEx *button = bar->TabButton(3);
    Press(3);
    QVERIFY(!Proxy());
    QVERIFY(!button->IsPressed());
    QCOMPARE(bar->count(), 4);
}

void TstBrowserTabBarExDrag::otherTabsChangedDuringDrag()
{
    MakeBar(1.0, 600, 4);
    const TabDataPtr dragged = m_bar->GetTabData(3);
    Press(3);
    MoveLeftEdgeTo(280);
    BrowserTabButtonEx *button = m_bar->TabButton(3);
    // The host adds and removes tabs: the floating tab stays under the pointer.
    m_bar->addTab(Web(QStringLiteral("added")));
    QCOMPARE(KelTest::LogicalX(button), 280);
    QCOMPARE(button->parentWidget(), m_bar->Viewport());
    m_bar->removeTab(1);
    QCOMPARE(KelTest::LogicalX(button), 280);
    m_bar->insertTab(1, Web(QStringLiteral("inserted")));
    QCOMPARE(KelTest::LogicalX(button), 280);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 3);
    QCOMPARE(m_bar->currentIndex(), 3);
    // The others lie in their slots around the gap.
    const int w = m_bar->ButtonWidth();
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(1)), 0);
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(2)), w);
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(4)), 3 * w);
    MoveLeftEdgeTo(10);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 1);
    Release();
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Home", "Tab 3", "inserted", "Tab 2", "Tab 4", "added"}));
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, w, 2 * w, 3 * w, 4 * w}));
    QCOMPARE(m_bar->currentIndex(), 1);
}

void TstBrowserTabBarExDrag::hostSelectsAnotherTabDuringDrag()
{
    MakeBar(1.0, 600, 4);
    const TabDataPtr dragged = m_bar->GetTabData(4);
    const TabDataPtr other = m_bar->GetTabData(1);
    Press(4);
    MoveLeftEdgeTo(440);
    m_bar->setCurrentIndex(1);
    BrowserTabButtonEx *button = m_bar->TabButton(4);
    // The dragged tab keeps its look until it drops; it is not lowered under the strip.
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonPressedEx"));
    QCOMPARE(m_bar->Viewport()->children().last(), static_cast<QObject *>(button));
    MoveLeftEdgeTo(0);
    QCOMPARE(m_bar->GetIndexByTabData(dragged), 1);
    // The index still names the tab the host chose.
    QCOMPARE(m_bar->currentIndex(), 2);
    QVERIFY(m_bar->GetCurrentTabData() == other);
    for (int i = 0; i < m_bar->count(); ++i)
        QCOMPARE(m_bar->TabButton(i)->IsChecked(), i == 2);
    Release();
    QCOMPARE(button->objectName(), QStringLiteral("TabButtonBackEx"));
}

void TstBrowserTabBarExDrag::deleteBarDuringDrag()
{
    MakeBar(1.0, 1000, 20);
    Press(3);
    MoveCursor(kPress + QPoint(2000, 0)); // with the edge scroll running
    QVERIFY(Proxy());
    m_window.reset();
    m_bar = nullptr;
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(nullptr));
    QTest::qWait(60);
}

void TstBrowserTabBarExDrag::deleteBarInsideTabButtonMoved()
{
    class DeletingBar : public TestTabBarEx
    {
    public:
        using TestTabBarEx::TestTabBarEx;
        std::unique_ptr<QWidget> *owner = nullptr;

    protected:
        void TabButtonMoved() override { owner->reset(); }
    };
    m_window.reset(new QWidget);
    auto *bar = new DeletingBar(m_window.get());
    bar->owner = &m_window;
    bar->SetFirstIndex(1);
    bar->resize(BarWidthFor(600), bar->ButtonBarHeight());
    Fill(*bar, 3);
    m_bar = bar;
    Press(2);
    MoveLeftEdgeTo(10);
    QPointer<BrowserTabBarEx> guard(bar);
    m_bar = nullptr;
    Release();
    QVERIFY(!guard);
}

KELTAB_TEST_MAIN(TstBrowserTabBarExDrag)
#include "tst_browsertabbarexdrag.moc"
