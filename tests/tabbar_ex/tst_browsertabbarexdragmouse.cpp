// SPDX-License-Identifier: MIT
// BrowserTabBarEx drag reordering with the pointer: presses, moves and releases go
// through the window system's path into the bar's window; once the drag popup is up
// Qt routes them to it, as it does for a user's mouse. The X pointer is moved along,
// since the bar reads the cursor's position.

#include "keltabtest.h"

#include "barwindowtest.h"
#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "browsertabmoveproxyex.h"
#include "dpitool.h"
#include "tabbarextestbar.h"

#include <QPointer>
#include <QWindow>

#include <memory>

using namespace TabTest;

class TstBrowserTabBarExDragMouse : public BarWindowTest
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

private Q_SLOTS:
    void dragReordersAndDrops();
    void pressAndReleaseOnTheSpot();
    void edgeScrollStepsPerTick_data();
    void edgeScrollStepsPerTick();
    void pressedTabRemovedMidDrag();
    void barDeletedMidDrag();

private:
    QPointer<TestTabBarEx> m_bar;

    TestTabBarEx *MakeBar(double scale, int designAvailable, int scrolling);
    QWindow *Window() const { return m_window->windowHandle(); }
    // Points are logical in the window (x from its start, the right edge when mirrored),
    // so that offsets along the strip read the same in both directions.
    QPoint LocalOf(QWidget *widget, const QPoint &pos) const
    {
        return KelTest::VisualPoint(m_window.get(), widget->mapTo(m_window.get(), KelTest::VisualPoint(widget, pos)));
    }
    QPoint OnScreen(const QPoint &local) const { return KelTest::VisualPoint(m_window.get(), local); }
    void Press(const QPoint &local);
    void Move(const QPoint &local);
    void Release(const QPoint &local);
    static QWidget *Popup() { return QApplication::activePopupWidget(); }
};

TestTabBarEx *TstBrowserTabBarExDragMouse::MakeBar(double scale, int designAvailable, int scrolling)
{
    DpiTool::SetScaleFactor(scale);
    m_bar = NewBarInWindow<TestTabBarEx>(designAvailable);
    m_bar->SetFirstIndex(1);
    m_window->move(100, 100);
    Fill(*m_bar, scrolling);
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        return nullptr;
    return m_bar;
}

void TstBrowserTabBarExDragMouse::Press(const QPoint &local)
{
    QCursor::setPos(Window()->mapToGlobal(OnScreen(local)));
    QTest::mousePress(Window(), Qt::LeftButton, {}, OnScreen(local));
}

void TstBrowserTabBarExDragMouse::Move(const QPoint &local)
{
    QCursor::setPos(Window()->mapToGlobal(OnScreen(local)));
    QTest::mouseMove(Window(), OnScreen(local));
}

void TstBrowserTabBarExDragMouse::Release(const QPoint &local)
{
    QCursor::setPos(Window()->mapToGlobal(OnScreen(local)));
    QTest::mouseRelease(Window(), Qt::LeftButton, {}, OnScreen(local));
}

void TstBrowserTabBarExDragMouse::dragReordersAndDrops()
{
    // One fixed tab, firstIndex 1, three tabs 150 wide at 0, 150 and 300.
    QVERIFY(MakeBar(1.0, 450, 3));
    QSignalSpy changed(m_bar, &BrowserTabBarEx::currentChanged);
    BrowserTabButtonEx *dragged = m_bar->TabButton(3);
    const QPoint press = LocalOf(dragged, QPoint(75, 16));
    Press(press);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_bar->currentIndex(), 3);
    QVERIFY(qobject_cast<BrowserTabMoveProxyEx *>(Popup()));

    // Left edge from 300 to 250: no change; to 200: index 2; to 40: index 1.
    Move(press - QPoint(50, 0));
    QCOMPARE(dragged->parentWidget(), m_bar->Viewport());
    QCOMPARE(KelTest::LogicalX(dragged), 250);
    QCOMPARE(m_bar->TabButton(3), dragged);
    Move(press - QPoint(100, 0));
    QCOMPARE(m_bar->TabButton(2), dragged);
    Move(press - QPoint(260, 0));
    QCOMPARE(m_bar->TabButton(1), dragged);
    QCOMPARE(m_bar->currentIndex(), 1);
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(2)), 150);
    QCOMPARE(KelTest::LogicalX(m_bar->TabButton(3)), 300);

    Release(press - QPoint(260, 0));
    QCOMPARE(Popup(), static_cast<QWidget *>(nullptr));
    QCOMPARE(dragged->parentWidget(), m_bar->Content());
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, 150, 300}));
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Home", "Tab 3", "Tab 1", "Tab 2"}));
    QCOMPARE(m_bar->movedCount, 1);
    QCOMPARE(changed.count(), 1);
    QVERIFY(!dragged->IsPressed());

    // The bar takes clicks again.
    Press(LocalOf(m_bar->TabButton(3), QPoint(75, 16)));
    Release(LocalOf(m_bar->TabButton(3), QPoint(75, 16)));
    QCOMPARE(m_bar->currentIndex(), 3);
    QCOMPARE(m_bar->movedCount, 2);
}

void TstBrowserTabBarExDragMouse::pressAndReleaseOnTheSpot()
{
    QVERIFY(MakeBar(1.0, 450, 3));
    BrowserTabButtonEx *button = m_bar->TabButton(2);
    int parentChanges = 0;
    class Watcher : public QObject
    {
    public:
        explicit Watcher(int *count)
            : m_count(count)
        {
        }

    protected:
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::ParentChange)
                ++*m_count;
            return false;
        }

    private:
        int *m_count;
    } watcher(&parentChanges);
    button->installEventFilter(&watcher);
    const QPoint spot = LocalOf(button, QPoint(60, 16));
    Press(spot);
    QVERIFY(Popup());
    // A move onto the press point itself is no motion.
    Move(spot);
    Release(spot);
    QCOMPARE(Popup(), static_cast<QWidget *>(nullptr));
    QCOMPARE(parentChanges, 0);
    QCOMPARE(button->parentWidget(), m_bar->Content());
    QCOMPARE(m_bar->movedCount, 1);
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, 150, 300}));
    button->removeEventFilter(&watcher);
}

void TstBrowserTabBarExDragMouse::edgeScrollStepsPerTick_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("step");
    QTest::newRow("1.0: 19 a tick") << 1.0 << 19;
    QTest::newRow("1.5: 28 a tick") << 1.5 << 28;
}

void TstBrowserTabBarExDragMouse::edgeScrollStepsPerTick()
{
    QFETCH(double, scale);
    QFETCH(int, step);
    QVERIFY(MakeBar(scale, 800, 20));
    QVERIFY(m_bar->IsOverflow());
    const int width = DpiTool::ScaleDefault(96);
    const int viewport = m_bar->Viewport()->width();
    const int minOffset = viewport - m_bar->Content()->width();
    BrowserTabButtonEx *dragged = m_bar->TabButton(2);
    const QPoint press = LocalOf(dragged, QPoint(width / 2, 16));
    Press(press);
    MoveRecorder recorder(m_bar->Content());
    QList<int> indexes;
    connect(m_bar, &BrowserTabBarEx::currentChanged, this, [] { QFAIL("no currentChanged during a drag"); });

    // Held against the right edge, the strip scrolls to its end under the tab, which is
    // sorted further right on every tick.
    // The tab (at width in the strip) reaches the viewport's end minus its width.
    const QPoint rightEdge = press + QPoint(viewport - 2 * width + 10, 0);
    QVERIFY(rightEdge.x() < m_window->width());
    Move(rightEdge);
    QCOMPARE(KelTest::LogicalX(dragged), viewport - width);
    QTRY_COMPARE_WITH_TIMEOUT(m_bar->ScrollOffset(), minOffset, 10000);
    const QList<int> steps = recorder.Steps(0);
    QVERIFY(steps.size() > 3);
    for (int i = 0; i < steps.size() - 1; ++i)
        QCOMPARE(steps.at(i), -step);
    QVERIFY(steps.last() >= -step && steps.last() < 0);
    QCOMPARE(m_bar->TabButton(20), dragged);
    QCOMPARE(m_bar->currentIndex(), 20);

    // Back from the edge into the middle, then against the left edge, then away again.
    Move(press + QPoint(viewport / 2, 0));
    recorder.xs.clear();
    Move(LocalOf(m_bar->Viewport(), QPoint(1, 16)) - QPoint(width, 0));
    QCOMPARE(KelTest::LogicalX(dragged), 0);
    QTRY_VERIFY(m_bar->ScrollOffset() > minOffset + 3 * step);
    Move(press + QPoint(viewport / 2, 0));
    const int stopped = m_bar->ScrollOffset();
    QVERIFY(stopped < 0);
    QTest::qWait(80);
    QCOMPARE(m_bar->ScrollOffset(), stopped);
    for (int s : recorder.Steps(minOffset))
        QCOMPARE(s, step);
    // Sorted on the way back: it left the last place.
    QVERIFY(m_bar->GetIndexByTabData(dragged->GetTabData()) < 20);

    Release(press + QPoint(viewport / 2, 0));
    QCOMPARE(Popup(), static_cast<QWidget *>(nullptr));
    QCOMPARE(m_bar->ScrollOffset(), stopped);
    QCOMPARE(m_bar->movedCount, 1);
    for (int i = 2; i < m_bar->count(); ++i)
        QCOMPARE(KelTest::LogicalX(m_bar->TabButton(i)), KelTest::LogicalX(m_bar->TabButton(i - 1)) + width);
}

void TstBrowserTabBarExDragMouse::pressedTabRemovedMidDrag()
{
    QVERIFY(MakeBar(1.0, 600, 4));
    const QPoint press = LocalOf(m_bar->TabButton(2), QPoint(75, 16));
    Press(press);
    Move(press + QPoint(40, 0));
    QVERIFY(Popup());
    // The host closes the tab while the user still holds it.
    m_bar->removeTab(2);
    QCOMPARE(Popup(), static_cast<QWidget *>(nullptr));
    Move(press + QPoint(80, 0));
    Release(press + QPoint(80, 0));
    QCOMPARE(m_bar->movedCount, 0);
    QCOMPARE(m_bar->ScrollingXs(), QList<int>({0, 200, 400}));
    // The mouse is free: a click selects a tab.
    QSignalSpy changed(m_bar, &BrowserTabBarEx::currentChanged);
    const QPoint other = LocalOf(m_bar->TabButton(1), QPoint(60, 16));
    Press(other);
    Release(other);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_bar->currentIndex(), 1);
}

void TstBrowserTabBarExDragMouse::barDeletedMidDrag()
{
    QVERIFY(MakeBar(1.0, 800, 20));
    const QPoint press = LocalOf(m_bar->TabButton(2), QPoint(40, 16));
    Press(press);
    Move(press + QPoint(m_bar->Viewport()->width() - 150, 0)); // the edge scroll runs
    QVERIFY(Popup());
    m_window.reset();
    m_bar = nullptr;
    QCOMPARE(Popup(), static_cast<QWidget *>(nullptr));
    QTest::qWait(60);
    // Let go of the button somewhere else, so that the next test starts with it up.
    QWidget other;
    other.resize(100, 40);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    QTest::mouseRelease(other.windowHandle(), Qt::LeftButton, {}, QPoint(50, 20));
}

KELTAB_TEST_MAIN(TstBrowserTabBarExDragMouse)
#include "tst_browsertabbarexdragmouse.moc"
