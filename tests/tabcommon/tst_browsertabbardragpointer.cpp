// SPDX-License-Identifier: MIT
// Dragging tabs with a real pointer and keyboard, on both bars: the press, the motion
// and Escape come from the X server through XTEST, the way a user's hand makes them,
// while the bar's move proxy holds the mouse.

#include "bothbars.h"
#include "keltabtest.h"
#include "xinput.h"

#include "dpitool.h"

#include <QVBoxLayout>

#include <memory>

using BothBars::Kind;

namespace {

// A classic bar whose first two tabs are fixed, as a host with pinned tabs has them.
class PinnedClassicBar : public BrowserTabBar
{
protected:
    int FixedTabCount() override { return 2; }
    int FixedTabTotalWidth() override { return 2 * DpiTool::ScaleDefault(60); }
};

} // namespace

class TstBrowserTabBarDragPointer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void escapeDuringDragPutsTheTabBack_data();
    void escapeDuringDragPutsTheTabBack();
    void dropDuringEdgeScrollLeavesTheTabInView();
    void draggedTabPassesUnderFixedTabs();
    void directionChangeDuringDragKeepsTheHeldTabInStep_data();
    void directionChangeDuringDragKeepsTheHeldTabInStep();

private:
    std::unique_ptr<KelTest::XInput> m_input;
    std::unique_ptr<QWidget> m_window;
    BrowserTabBarBase *m_bar = nullptr;

    void Show(BrowserTabBarBase *bar, int width, int tabs);
    QPoint Centre(int index) const { return m_bar->mapToGlobal(m_bar->tabRect(index).center()); }
    QList<bool> Pressed() const;
    // Where @p button starts, counted from the bar's start edge.
    int LogicalLeft(const QWidget *button) const;
};

void TstBrowserTabBarDragPointer::initTestCase()
{
    m_input = std::make_unique<KelTest::XInput>();
    const QString why = m_input->Unavailable();
    if (!why.isEmpty())
        QSKIP(qPrintable(why));
    DpiTool::SetScaleFactor(1.0);
}

void TstBrowserTabBarDragPointer::cleanup()
{
    m_input->Button(1, false);
    m_window.reset();
    m_bar = nullptr;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_input->MoveTo(QPoint(5, 5));
}

void TstBrowserTabBarDragPointer::Show(BrowserTabBarBase *bar, int width, int tabs)
{
    m_window.reset(new QWidget);
    auto *layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    m_bar = bar;
    layout->addWidget(bar);
    layout->addStretch();
    m_window->setFixedSize(width, 200);
    m_window->move(100, 100);
    BothBars::Fill(*bar, tabs);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

QList<bool> TstBrowserTabBarDragPointer::Pressed() const
{
    QList<bool> pressed;
    for (int i = 0; i < m_bar->count(); ++i)
        pressed << m_bar->TabButton(i)->IsPressed();
    return pressed;
}

int TstBrowserTabBarDragPointer::LogicalLeft(const QWidget *button) const
{
    const int x = button->mapTo(m_bar, QPoint()).x();
    return m_bar->isRightToLeft() ? m_bar->width() - x - button->width() : x;
}

void TstBrowserTabBarDragPointer::escapeDuringDragPutsTheTabBack_data()
{
    BothBars::AddRowPerBar("tab 1 over tab 3");
}

// Escape while a tab is dragged puts it back where it was and ends the drag; the
// release that follows changes nothing more.
void TstBrowserTabBarDragPointer::escapeDuringDragPutsTheTabBack()
{
    QFETCH(Kind, bar);
    Show(BothBars::Make(bar), 900, 5);
    const QStringList before = BothBars::Titles(*m_bar);
    QWidget *newTab = m_bar->findChild<QWidget *>(QStringLiteral("TabBarNewTabButton"));

    m_input->MoveTo(Centre(1));
    QTRY_VERIFY(m_bar->TabButton(1)->IsHovered());
    m_input->Button(1, true);
    QTRY_COMPARE(m_bar->currentIndex(), 1);
    m_input->GlideTo(Centre(1), Centre(3) + QPoint(KelTest::Forward(m_bar, 10), 0), 10);
    QTRY_COMPARE(m_bar->GetTabData(3)->GetTitle(), QStringLiteral("t1"));
    if (newTab)
        QVERIFY(!newTab->isVisible()); // hidden while a tab is dragged

    m_input->Key(KelTest::XInput::KeyEscape);
    QTRY_COMPARE(BothBars::Titles(*m_bar), before);
    QTRY_COMPARE(Pressed(), QList<bool>({false, false, false, false, false}));
    QCOMPARE(m_bar->currentIndex(), 1);
    QVERIFY(m_bar->TabButton(1)->IsChecked());
    if (newTab)
        QTRY_VERIFY(newTab->isVisible());
    // In its slot again, in order.
    for (int i = 1; i < m_bar->count(); ++i)
        QVERIFY(KelTest::VisualRect(m_bar, m_bar->tabRect(i - 1)).left() < KelTest::VisualRect(m_bar, m_bar->tabRect(i)).left());

    // The hand goes on and lets go: the drag is over, nothing moves any more.
    m_input->GlideTo(Centre(3), Centre(4), 4);
    m_input->Button(1, false);
    QTest::qWait(100);
    QCOMPARE(BothBars::Titles(*m_bar), before);
    QCOMPARE(m_bar->currentIndex(), 1);
}

// Held against the right edge, the strip scrolls under the tab; dropped there, the tab
// lies wholly in view, not half under the right arrow.
void TstBrowserTabBarDragPointer::dropDuringEdgeScrollLeavesTheTabInView()
{
    Show(new BrowserTabBarEx, 700, 30);
    auto *viewport = m_bar->findChild<QWidget *>(QStringLiteral("TabBarViewportEx"));
    QVERIFY(viewport);
    m_input->MoveTo(Centre(2));
    QTRY_VERIFY(m_bar->TabButton(2)->IsHovered());
    m_input->Button(1, true);
    QTRY_COMPARE(m_bar->currentIndex(), 2);
    // Past the strip's end: right of the viewport, or left of it right to left.
    const QPoint edge = viewport->mapToGlobal(KelTest::VisualPoint(viewport, QPoint(viewport->width() + 30, viewport->height() / 2)));
    m_input->GlideTo(Centre(2), edge, 10);
    // Let it scroll a few tabs' worth (however slowly a loaded machine ticks), then
    // drop mid-scroll.
    auto *content = m_bar->findChild<QWidget *>(QStringLiteral("TabBarContentEx"));
    QVERIFY(content);
    QTRY_VERIFY_WITH_TIMEOUT(KelTest::LogicalX(content) < -4 * DpiTool::ScaleDefault(96), 10000);
    const TabDataPtr dragged = m_bar->GetCurrentTabData();
    m_input->Button(1, false);
    QTRY_VERIFY(!m_bar->TabButton(m_bar->currentIndex())->IsPressed());
    QTest::qWait(100);
    QCOMPARE(m_bar->GetCurrentTabData(), dragged);
    QWidget *tab = m_bar->TabButton(m_bar->currentIndex());
    QVERIFY(m_bar->currentIndex() > 8);
    const QRect inViewport(tab->mapTo(viewport, QPoint(0, 0)), tab->size());
    QVERIFY2(inViewport.left() >= 0 && inViewport.right() < viewport->width(),
             qPrintable(QStringLiteral("tab at %1..%2 in a viewport of %3")
                            .arg(inViewport.left())
                            .arg(inViewport.right())
                            .arg(viewport->width())));
}

// Dragged to the start, a classic tab slides beneath the fixed tabs, never over them.
void TstBrowserTabBarDragPointer::draggedTabPassesUnderFixedTabs()
{
    auto *bar = new PinnedClassicBar;
    bar->SetFirstIndex(2);
    Show(bar, 900, 6);
    m_input->MoveTo(Centre(4));
    QTRY_VERIFY(m_bar->TabButton(4)->IsHovered());
    m_input->Button(1, true);
    QTRY_COMPARE(m_bar->currentIndex(), 4);
    BrowserTabButtonBase *dragged = m_bar->TabButton(4);
    const QPoint overFixed = m_bar->mapToGlobal(m_bar->tabRect(0).center());
    m_input->GlideTo(Centre(4), overFixed, 12);
    QTRY_VERIFY(dragged->geometry().intersects(m_bar->TabButton(0)->geometry()));
    // What lies on top where the two overlap is the fixed tab.
    QWidget *parent = m_bar->TabButton(0)->parentWidget();
    const QPoint shared = m_bar->TabButton(0)->geometry().intersected(dragged->geometry()).center();
    QWidget *top = parent->childAt(shared);
    QVERIFY(top);
    QVERIFY2(top == m_bar->TabButton(0) || m_bar->TabButton(0)->isAncestorOf(top),
             qPrintable(top->objectName()));
    m_input->Button(1, false);
    QTRY_VERIFY(!dragged->IsPressed());
    // Fixed tabs stay first.
    QCOMPARE(m_bar->GetTabData(0)->GetTitle(), QStringLiteral("t0"));
    QCOMPARE(m_bar->GetTabData(1)->GetTitle(), QStringLiteral("t1"));
}

void TstBrowserTabBarDragPointer::directionChangeDuringDragKeepsTheHeldTabInStep_data()
{
    // How far the hand has taken the tab when the strip turns: 0 is a tab pressed but
    // not yet dragged.
    BothBars::AddRowsPerBar<int>("movedBefore", {{"turned while dragged", 30}, {"turned before the first move", 0}});
}

// The host turns the strip round while a tab is held: the tab keeps its place in the
// strip (mirrored with the rest) and goes on following the hand from there, step for
// step, instead of leaping to the mirror image of where the hand would put it.
void TstBrowserTabBarDragPointer::directionChangeDuringDragKeepsTheHeldTabInStep()
{
    QFETCH(Kind, bar);
    QFETCH(int, movedBefore);
    Show(BothBars::Make(bar), 900, 5);
    BrowserTabButtonBase *held = m_bar->TabButton(1);
    const int start = LogicalLeft(held);

    m_input->MoveTo(Centre(1));
    QTRY_VERIFY(m_bar->TabButton(1)->IsHovered());
    m_input->Button(1, true);
    QTRY_COMPARE(m_bar->currentIndex(), 1);
    QPoint grabbed = Centre(1);
    if (movedBefore > 0) {
        grabbed += QPoint(KelTest::Forward(m_bar, movedBefore), 0);
        m_input->GlideTo(Centre(1), grabbed, 6);
        // Every motion delivered: the tab has gone as far as the hand.
        QTRY_COMPARE(LogicalLeft(held), start + movedBefore);
    }
    const int before = LogicalLeft(held);
    // The classic strip shows a tab as pressed from the press on, the scrolling strip
    // only once it is dragged.
    const bool pressedLook = held->IsPressed();
    QCOMPARE(pressedLook, bar == Kind::Classic || movedBefore > 0);

    const Qt::LayoutDirection turned = m_bar->isRightToLeft() ? Qt::LeftToRight : Qt::RightToLeft;
    m_bar->setLayoutDirection(turned);
    QCOMPARE(LogicalLeft(held), before);
    QCOMPARE(held->IsPressed(), pressedLook);

    // Twenty pixels on, forwards in the new direction: the tab goes twenty on.
    m_input->GlideTo(grabbed, grabbed + QPoint(KelTest::Forward(m_bar, 20), 0), 4);
    QTRY_COMPARE(LogicalLeft(held), before + 20);
    m_input->Button(1, false);
    QTRY_COMPARE(Pressed(), QList<bool>({false, false, false, false, false}));
    // Dropped into a slot: every tab in order from the new start edge.
    for (int i = 1; i < m_bar->count(); ++i)
        QTRY_VERIFY(LogicalLeft(m_bar->TabButton(i - 1)) < LogicalLeft(m_bar->TabButton(i)));
}

KELTAB_TEST_MAIN(TstBrowserTabBarDragPointer)
#include "tst_browsertabbardragpointer.moc"
