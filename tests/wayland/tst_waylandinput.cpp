// SPDX-License-Identifier: MIT
// Both tab strips as a Wayland client of a real compositor, under a real pointer: the
// test runs inside weston (tests/support/weston.sh), weston inside an X server, and
// the X server's pointer, moved through XTEST, is weston's pointer. What the user sees
// is read back from the X screen. A Wayland client can neither read nor set the
// global pointer position nor place a top-level window, so the test learns where
// weston put its window from the events: it moves the pointer to a point of the X
// screen and reads where the motion lands in the window. A movable QTabBar runs the
// same drag as a control.

#include "bothbars.h"
#include "keltabtest.h"
#include "xinput.h"

#include "../gesture/gesturetestsupport.h"

#include "browsergesturehandler.h"
#include "dpitool.h"
#include "gesturetoast.h"
#include "kelmenu.h"
#include "keltabstyle.h"

#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <QTabBar>
#include <QVBoxLayout>

#include <functional>
#include <memory>

namespace {

enum class Strip { QtTabBar, Classic, Scrolling };

// The size weston.sh gives the output, and the test window's: small enough to leave
// weston room for it, large enough to cover the output's centre wherever it goes.
constexpr QSize kOutput(1280, 800);
constexpr QSize kWindow(1100, 640);

// A point over weston's panel, which no window covers: the pointer waits there while
// a window maps. A surface that appears under a resting pointer may miss its enter,
// and then hears of no motion until the pointer has left it and come back.
constexpr QPoint kParking(640, 10);

constexpr unsigned long kKeyF2 = 0xffbf; // the X keysym

// Records where the pointer's motions land in a window.
class MotionRecorder : public QObject
{
public:
    QPoint last{-1, -1};
    int count = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::MouseMove) {
            last = static_cast<QMouseEvent *>(event)->pos();
            ++count;
        }
        return QObject::eventFilter(watched, event);
    }
};

BrowserTabBarBase *MakeBar(Strip strip)
{
    return BothBars::Make(strip == Strip::Classic ? BothBars::Kind::Classic : BothBars::Kind::Scrolling);
}

// The bounding rectangle of the pixels that differ between two pictures of one place.
QRect Changed(const QImage &before, const QImage &after)
{
    QRect changed;
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x) {
            if (before.pixel(x, y) != after.pixel(x, y))
                changed |= QRect(x, y, 1, 1);
        }
    }
    return changed;
}

} // namespace

Q_DECLARE_METATYPE(Strip)

class TstWaylandInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void dragFollowsThePointerAndReorders_data();
    void dragFollowsThePointerAndReorders();
    void dragAgainstTheEndScrollsTheStrip();
    void closingModeEndsAfterAQuickExit_data();
    void closingModeEndsAfterAQuickExit();
    void rightClickMenuOpensAtThePointer_data();
    void rightClickMenuOpensAtThePointer();
    void menuFromCodeOpensUnderTheTab_data();
    void menuFromCodeOpensUnderTheTab();
    void heldArrowLeavesNoDot();
    void gestureToastIsCentredOnThePageAndTakesNothing();

private:
    std::unique_ptr<KelTest::XInput> m_input;
    std::unique_ptr<QWidget> m_window;
    QWidget *m_page = nullptr;
    QWidget *m_strip = nullptr;
    BrowserTabBarBase *m_bar = nullptr; // null for the QTabBar
    QRect m_output;  // weston's output on the X screen
    QPoint m_origin; // where weston put the window's top-left corner, in the output

    bool FindOutput();
    void Show(Strip strip, int width, int tabs);
    void FindWindow();
    // The pointer, moved to a point of weston's output in one jump or in @p steps.
    void MoveTo(const QPoint &pos) { m_input->MoveTo(pos + m_output.topLeft()); }
    void GlideTo(const QPoint &from, const QPoint &to, int steps)
    {
        m_input->GlideTo(from + m_output.topLeft(), to + m_output.topLeft(), steps);
    }
    // A point of a widget of the window, in weston's output.
    QPoint OnScreen(const QWidget *widget, const QPoint &pos) const
    {
        return widget->mapTo(m_window.get(), pos) + m_origin;
    }
    QPoint OnScreen(const QPoint &stripPos) const { return OnScreen(m_strip, stripPos); }
    QPoint Centre(int index) const;
    // A point of weston's output beside the window: the pointer there is over no
    // surface of the client's.
    QPoint Outside() const;
    QStringList Titles() const;
    QImage GrabOutput() { return m_input->Grab(m_output); }
    QImage StillPicture();
    QRect MenuShownAfter(const std::function<void()> &open);
};

void TstWaylandInput::initTestCase()
{

    if (QGuiApplication::platformName() != QLatin1String("wayland"))
        QSKIP("needs a Wayland compositor: run under tests/support/weston.sh (the wayland label)");
    m_input = std::make_unique<KelTest::XInput>();
    QVERIFY2(m_input->IsValid(), "weston's X server offers no XTEST extension");
    // weston's output is a window of the X screen, wherever the X server put it.
    QTRY_VERIFY_WITH_TIMEOUT(FindOutput(), 10000);
    // Its first picture of the desktop, which is never black, says it is up.
    const QPoint centre(kOutput.width() / 2, kOutput.height() / 2);
    QTRY_VERIFY_WITH_TIMEOUT(GrabOutput().pixel(centre) != qRgb(0, 0, 0), 10000);
    // weston's X11 backend moves its pointer by the X pointer's steps, not to where
    // the X pointer is, and stops it at the output's edges: whatever the two started
    // from, against the far corner and then the near one they coincide from then on.
    MoveTo(QPoint(kOutput.width() - 1, kOutput.height() - 1));
    QTest::qWait(100);
    MoveTo(QPoint(0, 0));
    QTest::qWait(100);
    MoveTo(kParking);
    DpiTool::SetScaleFactor(1.0);
    // Drawn as a host draws them, with the library's style sheet.
    KelTabStyle::ApplyDefaultStyleSheet();
}

bool TstWaylandInput::FindOutput()
{
    const QList<QRect> windows = m_input->TopLevelWindows();
    for (const QRect &window : windows) {
        if (window.size() == kOutput)
            m_output = window;
    }
    return m_output.size() == kOutput;
}

void TstWaylandInput::cleanup()
{
    m_input->Button(1, false);
    m_input->Button(3, false);
    m_input->KeySym(kKeyF2, false);
    m_window.reset();
    m_strip = nullptr;
    m_bar = nullptr;
    m_page = nullptr;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    MoveTo(kParking);
    QTest::qWait(50);
}

// The strip at the top of a full-screen window, @p width wide, with @p tabs tabs
// "t0", "t1", ...; a plain page below it.
void TstWaylandInput::Show(Strip strip, int width, int tabs)
{
    m_window.reset(new QWidget);
    auto *layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    if (strip == Strip::QtTabBar) {
        auto *tabBar = new QTabBar;
        tabBar->setMovable(true);
        tabBar->setExpanding(false);
        for (int i = 0; i < tabs; ++i)
            tabBar->addTab(QStringLiteral("t%1").arg(i));
        m_strip = tabBar;
    } else {
        m_bar = MakeBar(strip);
        m_bar->InitMenu();
        BothBars::Fill(*m_bar, tabs);
        m_strip = m_bar;
    }
    m_strip->setFixedWidth(width);
    layout->addWidget(m_strip, 0, Qt::AlignLeft);
    m_page = new QWidget;
    m_page->setAutoFillBackground(true);
    QPalette palette = m_page->palette();
    palette.setColor(QPalette::Window, QColor(40, 90, 160));
    m_page->setPalette(palette);
    layout->addWidget(m_page, 1);
    m_window->resize(kWindow);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    FindWindow();
}

// Moves the pointer over the output's centre, which the window covers, and reads
// where the motion lands: the difference is the window's place.
void TstWaylandInput::FindWindow()
{
    MotionRecorder recorder;
    m_window->windowHandle()->installEventFilter(&recorder);
    const QPoint centre(kOutput.width() / 2, kOutput.height() / 2);
    // Until two motions in a row agree: motions made before weston has mapped the
    // window, or while it still places it, reach nothing or land elsewhere. Each
    // comes from the panel, so that the window hears of the pointer entering it.
    QPoint origin(-1, -1);
    bool agreed = false;
    for (int attempt = 0; attempt < 100 && !agreed; ++attempt) {
        const QPoint target = centre + QPoint(attempt % 2 ? 7 : -7, 0);
        MoveTo(kParking);
        QTest::qWait(20);
        const int before = recorder.count;
        MoveTo(target);
        if (!QTest::qWaitFor([&] { return recorder.count > before; }, 100))
            continue;
        const QPoint found = target - recorder.last;
        agreed = found == origin;
        origin = found;
    }
    m_window->windowHandle()->removeEventFilter(&recorder);
    QVERIFY2(agreed, "no motion reached the window");
    m_origin = origin;
    QVERIFY2(QRect(QPoint(0, 0), kOutput).contains(QRect(m_origin, kWindow)),
             qPrintable(QStringLiteral("window at %1,%2").arg(m_origin.x()).arg(m_origin.y())));
}

// The output once nothing changes on it any more (the window has painted, a closed
// one has gone): two pictures 50 ms apart agree.
QImage TstWaylandInput::StillPicture()
{
    QImage last = GrabOutput();
    for (int attempt = 0; attempt < 60; ++attempt) {
        QTest::qWait(50);
        QImage next = GrabOutput();
        if (next == last)
            return next;
        last = next;
    }
    return last;
}

QPoint TstWaylandInput::Outside() const
{
    const int leftRoom = m_origin.x();
    const int rightRoom = kOutput.width() - m_origin.x() - kWindow.width();
    const int x = leftRoom > rightRoom ? leftRoom / 2 : kOutput.width() - rightRoom / 2;
    return QPoint(x, kOutput.height() / 2);
}

QPoint TstWaylandInput::Centre(int index) const
{
    const QRect rect = m_bar ? m_bar->tabRect(index) : static_cast<QTabBar *>(m_strip)->tabRect(index);
    return OnScreen(rect.center());
}

QStringList TstWaylandInput::Titles() const
{
    if (m_bar)
        return BothBars::Titles(*m_bar);
    QStringList titles;
    auto *tabBar = static_cast<QTabBar *>(m_strip);
    for (int i = 0; i < tabBar->count(); ++i)
        titles << tabBar->tabText(i);
    return titles;
}

void TstWaylandInput::dragFollowsThePointerAndReorders_data()
{
    QTest::addColumn<Strip>("strip");
    QTest::newRow("QTabBar (control)") << Strip::QtTabBar;
    QTest::newRow("classic") << Strip::Classic;
    QTest::newRow("scrolling") << Strip::Scrolling;
}

// Held and moved, the tab follows the pointer and changes places with the tabs it
// passes; the release ends the drag there.
void TstWaylandInput::dragFollowsThePointerAndReorders()
{
    QFETCH(Strip, strip);
    Show(strip, 900, 5);
    if (QTest::currentTestFailed())
        return;
    const QPoint from = Centre(1);
    const QPoint to = Centre(3) + QPoint(10, 0);
    QWidget *held = m_bar ? static_cast<QWidget *>(m_bar->TabButton(1)) : nullptr;
    const int heldX = held ? OnScreen(held, QPoint(0, 0)).x() : 0;

    MoveTo(from);
    QTest::qWait(50);
    m_input->Button(1, true);
    if (m_bar)
        QTRY_COMPARE(m_bar->currentIndex(), 1);
    else
        QTRY_COMPARE(static_cast<QTabBar *>(m_strip)->currentIndex(), 1);
    GlideTo(from, (from + to) / 2, 6);
    if (held) // half-way, the tab is half-way too
        QTRY_VERIFY(OnScreen(held, QPoint(0, 0)).x() >= heldX + (to.x() - from.x()) / 2 - 20);
    GlideTo((from + to) / 2, to, 6);
    QTRY_COMPARE(Titles(), QStringList({"t0", "t2", "t3", "t1", "t4"}));

    m_input->Button(1, false);
    QTRY_VERIFY(!QApplication::activePopupWidget());
    QTest::qWait(100);
    QCOMPARE(Titles(), QStringList({"t0", "t2", "t3", "t1", "t4"}));
    if (m_bar) {
        QCOMPARE(m_bar->currentIndex(), 3);
        QTRY_VERIFY(!m_bar->TabButton(3)->IsPressed());
        // Dropped into its slot.
        QVERIFY(m_bar->tabRect(2).right() < m_bar->tabRect(3).left() + 2);
    }
    // Moving on after the release moves nothing.
    GlideTo(to, Centre(4), 4);
    QTest::qWait(100);
    QCOMPARE(Titles(), QStringList({"t0", "t2", "t3", "t1", "t4"}));
}

// A tab held against the end of an overflowing scrolling strip scrolls it.
void TstWaylandInput::dragAgainstTheEndScrollsTheStrip()
{
    Show(Strip::Scrolling, 700, 30);
    if (QTest::currentTestFailed())
        return;
    const QPoint from = Centre(1);
    const QPoint edge = OnScreen(QPoint(m_strip->width() - 45, m_strip->height() / 2));
    QWidget *first = m_bar->TabButton(0);
    const int firstX = OnScreen(first, QPoint(0, 0)).x();

    MoveTo(from);
    QTest::qWait(50);
    m_input->Button(1, true);
    QTRY_COMPARE(m_bar->currentIndex(), 1);
    GlideTo(from, edge, 10);
    QTRY_VERIFY(OnScreen(first, QPoint(0, 0)).x() < firstX - 100);
    m_input->Button(1, false);
    QTRY_VERIFY(!QApplication::activePopupWidget());
    QTRY_VERIFY(m_bar->GetIndexByName(QStringLiteral("t1")) > 5);
}

void TstWaylandInput::closingModeEndsAfterAQuickExit_data()
{
    QTest::addColumn<Strip>("strip");
    QTest::newRow("classic") << Strip::Classic;
    QTest::newRow("scrolling") << Strip::Scrolling;
}

// Tabs closed with their close buttons keep their widths under the pointer; one quick
// move out of the window (no motion in between reaches the client, only the leave)
// ends that.
void TstWaylandInput::closingModeEndsAfterAQuickExit()
{
    QFETCH(Strip, strip);
    Show(strip, 1000, 8);
    if (QTest::currentTestFailed())
        return;
    connect(m_bar, &BrowserTabBarBase::tabCloseRequested, m_bar, &BrowserTabBarBase::removeTab);
    m_bar->setCurrentIndex(2);
    const int width = m_bar->ButtonWidth();
    QVERIFY(width < m_bar->MaxButtonWidth());
    auto *close = m_bar->TabButton(2)->findChild<QPushButton *>(
        strip == Strip::Classic ? QStringLiteral("TabButtonCloseBtn") : QStringLiteral("TabButtonCloseBtnEx"));
    QVERIFY(close);
    QTRY_VERIFY(close->isVisible());
    const QPoint onClose = OnScreen(close, close->rect().center());

    MoveTo(onClose);
    QTest::qWait(50);
    for (int closed = 1; closed <= 2; ++closed) {
        m_input->Click(1);
        QTRY_COMPARE(m_bar->count(), 8 - closed);
        QTest::qWait(50);
        QCOMPARE(m_bar->ButtonWidth(), width); // frozen under the pointer
    }
    MoveTo(Outside());
    QTRY_VERIFY(m_bar->ButtonWidth() > width);
}

void TstWaylandInput::rightClickMenuOpensAtThePointer_data()
{
    closingModeEndsAfterAQuickExit_data();
}

// The context menu opens where the right click was, on the screen, not where the
// client last thought the pointer was.
void TstWaylandInput::rightClickMenuOpensAtThePointer()
{
    QFETCH(Strip, strip);
    Show(strip, 900, 5);
    if (QTest::currentTestFailed())
        return;
    const QPoint at = Centre(2) + QPoint(7, 3);
    MoveTo(at);
    QTest::qWait(50);
    const QRect shown =
        MenuShownAfter([this] { m_input->Click(3); }).intersected(QRect(at - QPoint(2, 2), QSize(400, 400)));
    // The menu's corner lies at the click.
    QVERIFY2((shown.topLeft() - at).manhattanLength() <= 4,
             qPrintable(QStringLiteral("menu at %1,%2, click at %3,%4")
                            .arg(shown.x()).arg(shown.y()).arg(at.x()).arg(at.y())));
}

void TstWaylandInput::menuFromCodeOpensUnderTheTab_data()
{
    closingModeEndsAfterAQuickExit_data();
}

// A host that opens a tab's menu from code (here on a key of its own), with the
// pointer elsewhere (no client knows where), has it open under the tab, as from the
// keyboard. (A compositor lets a popup take the pointer only in answer to an input
// event, so the host's code runs on one.)
void TstWaylandInput::menuFromCodeOpensUnderTheTab()
{
    QFETCH(Strip, strip);
    Show(strip, 900, 5);
    if (QTest::currentTestFailed())
        return;
    auto *shortcut = new QShortcut(QKeySequence(Qt::Key_F2), m_window.get());
    connect(shortcut, &QShortcut::activated, m_bar, [this] {
        QMetaObject::invokeMethod(m_bar, "SlotMenuClicked", Q_ARG(TabDataPtr, m_bar->GetTabData(2)));
    });
    MoveTo(Outside());
    QTest::qWait(50);
    QTRY_VERIFY(m_window->isActiveWindow());
    QSignalSpy activated(shortcut, &QShortcut::activated);
    // Held while the menu comes up, as a hand holds a key for a moment.
    const QPoint under = OnScreen(m_bar->TabButton(2), QPoint(0, m_bar->TabButton(2)->height()));
    // What changed near that corner: the key also shows the focus ring on the strip.
    const QRect shown = MenuShownAfter([this] { m_input->KeySym(kKeyF2, true); })
                            .intersected(QRect(under - QPoint(2, 2), QSize(400, 400)));
    m_input->KeySym(kKeyF2, false);
    QCOMPARE(activated.count(), 1);
    QVERIFY2((shown.topLeft() - under).manhattanLength() <= 4,
             qPrintable(QStringLiteral("menu at %1,%2, tab's corner at %3,%4")
                            .arg(shown.x()).arg(shown.y()).arg(under.x()).arg(under.y())));
}

// Runs @p open, which brings the bar's menu up, and returns where the menu showed on
// the output; the menu runs its own loop, so it is pictured, and closed, from inside.
QRect TstWaylandInput::MenuShownAfter(const std::function<void()> &open)
{
    auto *menu = m_bar->findChild<KelMenu *>(QStringLiteral("BrowserTabBarMenu"));
    if (!menu)
        return QRect();
    const QImage before = StillPicture();
    QImage shownPicture;
    const QMetaObject::Connection connection =
        connect(menu, &QMenu::aboutToShow, menu, [this, menu, &shownPicture] {
            QTimer::singleShot(300, menu, [this, menu, &shownPicture] {
                shownPicture = GrabOutput();
                menu->hide();
            });
        });
    open();
    const bool shown = QTest::qWaitFor([&] { return !shownPicture.isNull() && !menu->isVisible(); }, 5000);
    disconnect(connection);
    if (!shown)
        return QRect();
    return Changed(before, shownPicture);
}

// Holding a scroll arrow, the invisible popup that takes the mouse shows nothing.
void TstWaylandInput::heldArrowLeavesNoDot()
{
    // Red, were it painted at all; the window's corner, where it lies, is grey.
    const QString styleSheet = qApp->styleSheet();
    qApp->setStyleSheet(styleSheet + QStringLiteral("\nTabPopupProxy { background: red; }"));
    const auto restore = qScopeGuard([styleSheet] { qApp->setStyleSheet(styleSheet); });
    Show(Strip::Scrolling, 700, 30);
    if (QTest::currentTestFailed())
        return;
    QWidget *arrow = m_bar->findChild<QWidget *>(QStringLiteral("TabButtonRightArrowEx"));
    QVERIFY(arrow);
    QTRY_VERIFY(arrow->isVisible());
    const QPoint onArrow = OnScreen(arrow, arrow->rect().center());
    MoveTo(onArrow);
    QTest::qWait(100);
    const QImage before = StillPicture();
    m_input->Button(1, true);
    QTRY_VERIFY(QApplication::activePopupWidget());
    const QImage held = StillPicture();
    m_input->Button(1, false);
    QTRY_VERIFY(!QApplication::activePopupWidget());
    // Only the strip's tabs (the viewport) may have changed: they scrolled.
    const QRect viewport(OnScreen(QPoint(0, 0)), m_strip->size());
    QImage outside = held;
    QImage outsideBefore = before;
    for (int y = viewport.top(); y <= viewport.bottom(); ++y) {
        for (int x = viewport.left(); x <= viewport.right(); ++x) {
            outside.setPixel(x, y, 0);
            outsideBefore.setPixel(x, y, 0);
        }
    }
    QCOMPARE(Changed(outsideBefore, outside), QRect());
    // Nor at the window's corner, over the strip, where the popup lies.
    QCOMPARE(held.copy(QRect(m_origin, QSize(4, 4))), before.copy(QRect(m_origin, QSize(4, 4))));
}

// The toast of a gesture appears centred on the page the stroke is drawn over, and
// the browser window stays active with its focus where it was.
void TstWaylandInput::gestureToastIsCentredOnThePageAndTakesNothing()
{
    GestureTest::Recorders recorders;
    Show(Strip::Scrolling, 900, 3);
    if (QTest::currentTestFailed())
        return;
    auto *focus = new QPushButton(QStringLiteral("focus"), m_page);
    focus->move(20, 20);
    focus->show();
    focus->setFocus();
    QTRY_VERIFY(m_window->isActiveWindow());
    QTRY_COMPARE(QApplication::focusWidget(), focus);
    const QRect page(OnScreen(m_page, QPoint(0, 0)), m_page->size());
    recorders.delegate.area = QRect(m_page->mapToGlobal(QPoint(0, 0)), m_page->size());
    const QImage before = StillPicture();

    BrowserGestureHandler handler;
    handler.SetGestureHandlerDelegate(&recorders.delegate);
    handler.HandleGestureMoving({QStringLiteral("R")});
    GestureToast *toast = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *found = qobject_cast<GestureToast *>(widget))
            toast = found;
    }
    QVERIFY(toast);
    QTRY_VERIFY(toast->isVisible());
    const QImage after = StillPicture();
    const QRect shown = Changed(before, after);
    QVERIFY(!shown.isEmpty());
    QVERIFY2((shown.center() - page.center()).manhattanLength() <= 4,
             qPrintable(QStringLiteral("toast centred at %1,%2, page centred at %3,%4")
                            .arg(shown.center().x()).arg(shown.center().y())
                            .arg(page.center().x()).arg(page.center().y())));
    // The panel, its rounded corners aside.
    QVERIFY2(qAbs(shown.width() - toast->width()) <= 2 && qAbs(shown.height() - toast->height()) <= 2,
             qPrintable(QStringLiteral("toast %1 x %2").arg(shown.width()).arg(shown.height())));
    QVERIFY(m_window->isActiveWindow());
    QCOMPARE(QApplication::focusWidget(), focus);
    handler.HandleGestureEvent({QStringLiteral("R")});
    QTRY_VERIFY(!toast->isVisible());
}

KELTAB_TEST_MAIN(TstWaylandInput)
#include "tst_waylandinput.moc"
