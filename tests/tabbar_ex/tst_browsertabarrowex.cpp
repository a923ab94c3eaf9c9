// SPDX-License-Identifier: MIT
// BrowserTabArrowEx: click, double click, and press-and-hold through its invisible
// popup, driven by mouse events that go through the window system's path (QWindow),
// so that the popup really takes the mouse from the arrow.

#include "keltabtest.h"

#include "browsertabarrowex.h"
#include "browsertabarrowproxyex.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QWindow>

#include <memory>

class TstBrowserTabArrowEx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void construction();
    void shortPressGivesOneClick();
    void holdLongerThanDelayHoldsWithoutClick();
    void releaseElsewhereEndsHold();
    void popupClosedByOthersEndsHold();
    void doubleClick();
    void rightButtonDoesNotHold();
    void disabledWhilePressedDoesNotHold();
    void deletedWhileHolding();
    void deletedWhileTimerRuns();

private:
    std::unique_ptr<QWidget> m_window;
    BrowserTabArrowEx *m_arrow = nullptr;

    QWindow *Window() const { return m_window->windowHandle(); }
    QPoint Centre() const { return m_arrow->mapTo(m_window.get(), m_arrow->rect().center()); }
    static BrowserTabArrowProxyEx *Proxy()
    {
        return qobject_cast<BrowserTabArrowProxyEx *>(QApplication::activePopupWidget());
    }
};

void TstBrowserTabArrowEx::init()
{
    m_window.reset(new QWidget);
    m_window->resize(200, 100);
    m_arrow = new BrowserTabArrowEx(m_window.get());
    m_arrow->setGeometry(50, 30, 20, 20);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TstBrowserTabArrowEx::cleanup()
{
    m_window.reset();
    m_arrow = nullptr;
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(nullptr));
}

void TstBrowserTabArrowEx::construction()
{
    QCOMPARE(BrowserTabArrowEx::HoldDelay(), 500);
    QVERIFY(!m_arrow->IsHolding());
    QCOMPARE(m_arrow->focusPolicy(), Qt::NoFocus);
    // The popup is a window of its own, not a child of the arrow.
    QVERIFY(m_arrow->findChildren<BrowserTabArrowProxyEx *>().isEmpty());
}

void TstBrowserTabArrowEx::shortPressGivesOneClick()
{
    QSignalSpy clicked(m_arrow, &QPushButton::clicked);
    QSignalSpy pressed(m_arrow, &BrowserTabArrowEx::SigPressed);
    QSignalSpy released(m_arrow, &BrowserTabArrowEx::SigReleased);
    QTest::mousePress(Window(), Qt::LeftButton, {}, Centre());
    QTest::qWait(150);
    QTest::mouseRelease(Window(), Qt::LeftButton, {}, Centre());
    QCOMPARE(clicked.count(), 1);
    // The hold timer was stopped by the release: nothing follows.
    QTest::qWait(BrowserTabArrowEx::HoldDelay() + 150);
    QCOMPARE(pressed.count(), 0);
    QCOMPARE(released.count(), 0);
    QVERIFY(!Proxy());
}

void TstBrowserTabArrowEx::holdLongerThanDelayHoldsWithoutClick()
{
    QSignalSpy clicked(m_arrow, &QPushButton::clicked);
    QSignalSpy pressed(m_arrow, &BrowserTabArrowEx::SigPressed);
    QSignalSpy released(m_arrow, &BrowserTabArrowEx::SigReleased);
    QElapsedTimer elapsed;
    elapsed.start();
    QTest::mousePress(Window(), Qt::LeftButton, {}, Centre());
    QTRY_COMPARE(pressed.count(), 1);
    QVERIFY(elapsed.elapsed() >= BrowserTabArrowEx::HoldDelay() - 5);
    QVERIFY(m_arrow->IsHolding());
    BrowserTabArrowProxyEx *proxy = Proxy();
    QVERIFY(proxy);
    QVERIFY(!proxy->parentWidget());
    QCOMPARE(proxy->windowOpacity(), 0.0);
    QCOMPARE(released.count(), 0);

    // The release goes to the popup, not to the arrow.
    QTest::mouseRelease(Window(), Qt::LeftButton, {}, Centre());
    QCOMPARE(released.count(), 1);
    QVERIFY(!m_arrow->IsHolding());
    QVERIFY(!Proxy());
    QTest::qWait(50);
    QCOMPARE(clicked.count(), 0);
    QVERIFY(!m_arrow->isDown());
    QCOMPARE(pressed.count(), 1);

    // A later short click works as before.
    QTest::mouseClick(Window(), Qt::LeftButton, {}, Centre());
    QCOMPARE(clicked.count(), 1);
}

void TstBrowserTabArrowEx::releaseElsewhereEndsHold()
{
    QSignalSpy clicked(m_arrow, &QPushButton::clicked);
    QSignalSpy released(m_arrow, &BrowserTabArrowEx::SigReleased);
    QTest::mousePress(Window(), Qt::LeftButton, {}, Centre());
    QTRY_VERIFY(m_arrow->IsHolding());
    QTest::mouseRelease(Window(), Qt::LeftButton, {}, QPoint(180, 90));
    QCOMPARE(released.count(), 1);
    QCOMPARE(clicked.count(), 0);
}

void TstBrowserTabArrowEx::popupClosedByOthersEndsHold()
{
    QSignalSpy released(m_arrow, &BrowserTabArrowEx::SigReleased);
    QTest::mousePress(Window(), Qt::LeftButton, {}, Centre());
    QTRY_VERIFY(m_arrow->IsHolding());
    // The window system (or the host) may close the popup without a release.
    Proxy()->hide();
    QCOMPARE(released.count(), 1);
    QVERIFY(!m_arrow->IsHolding());
    QVERIFY(!m_arrow->isDown());
}

void TstBrowserTabArrowEx::doubleClick()
{
    QSignalSpy doubled(m_arrow, &BrowserTabArrowEx::SigDoubleClicked);
    QSignalSpy pressed(m_arrow, &BrowserTabArrowEx::SigPressed);
    QTest::mouseDClick(Window(), Qt::LeftButton, {}, Centre());
    QCOMPARE(doubled.count(), 1);
    QTest::qWait(BrowserTabArrowEx::HoldDelay() + 150);
    QCOMPARE(pressed.count(), 0);
    // A right double click is not one.
    QTest::mouseDClick(Window(), Qt::RightButton, {}, Centre());
    QCOMPARE(doubled.count(), 1);
}

void TstBrowserTabArrowEx::rightButtonDoesNotHold()
{
    QSignalSpy pressed(m_arrow, &BrowserTabArrowEx::SigPressed);
    QTest::mousePress(Window(), Qt::RightButton, {}, Centre());
    QTest::qWait(BrowserTabArrowEx::HoldDelay() + 150);
    QCOMPARE(pressed.count(), 0);
    QVERIFY(!Proxy());
    QTest::mouseRelease(Window(), Qt::RightButton, {}, Centre());
}

void TstBrowserTabArrowEx::disabledWhilePressedDoesNotHold()
{
    // The arrow may be disabled during a press (its end was reached); a popup would
    // then take the next click of the user for nothing.
    QSignalSpy pressed(m_arrow, &BrowserTabArrowEx::SigPressed);
    QTest::mousePress(Window(), Qt::LeftButton, {}, Centre());
    m_arrow->setEnabled(false);
    QTest::qWait(BrowserTabArrowEx::HoldDelay() + 150);
    QCOMPARE(pressed.count(), 0);
    QVERIFY(!Proxy());
    QTest::mouseRelease(Window(), Qt::LeftButton, {}, Centre());
}

void TstBrowserTabArrowEx::deletedWhileHolding()
{
    QSignalSpy released(m_arrow, &BrowserTabArrowEx::SigReleased);
    QTest::mousePress(Window(), Qt::LeftButton, {}, Centre());
    QTRY_VERIFY(m_arrow->IsHolding());
    QPointer<BrowserTabArrowProxyEx> proxy = Proxy();
    QVERIFY(proxy);
    delete m_arrow;
    m_arrow = nullptr;
    QVERIFY(!proxy);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(released.count(), 0);
    QTest::mouseRelease(Window(), Qt::LeftButton, {}, QPoint(60, 40));
}

void TstBrowserTabArrowEx::deletedWhileTimerRuns()
{
    QTest::mousePress(Window(), Qt::LeftButton, {}, Centre());
    delete m_arrow;
    m_arrow = nullptr;
    QTest::qWait(BrowserTabArrowEx::HoldDelay() + 150);
    QVERIFY(!QApplication::activePopupWidget());
    QTest::mouseRelease(Window(), Qt::LeftButton, {}, QPoint(60, 40));
}

KELTAB_TEST_MAIN(TstBrowserTabArrowEx)
#include "tst_browsertabarrowex.moc"
