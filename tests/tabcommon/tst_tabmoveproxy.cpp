// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "tabmoveproxy.h"

namespace {

const QPoint kStart(200, 150);

void ShowProxy(QWidget *proxy)
{
    // The offscreen platform cannot raise a window or grab the keyboard and says so
    // each time a popup opens.
    if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    }
    proxy->show();
}

void SendMove(QWidget *proxy, const QPoint &globalPos)
{
    QMouseEvent event(QEvent::MouseMove, QPointF(globalPos - proxy->pos()), QPointF(globalPos),
                      Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(proxy, &event);
}

void SendRelease(QWidget *proxy, const QPoint &globalPos, Qt::MouseButton button)
{
    QMouseEvent event(QEvent::MouseButtonRelease, QPointF(globalPos - proxy->pos()), QPointF(globalPos),
                      button, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(proxy, &event);
}

} // namespace

class TstTabMoveProxy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void isAnInvisiblePopup();
    void startPointIsKept();
    void noMoveWhileOnStartPoint();
    void firstMoveAwayEmits_data();
    void firstMoveAwayEmits();
    void afterLeavingEveryMoveEmits();
    void leftReleaseResetsMoved();
    void otherReleaseKeepsHold();
    void pressAndReleaseWithoutMotion();
    void holdEndedByHideStartsUnmoved();

private:
    TabMoveProxy *m_proxy = nullptr;
};

void TstTabMoveProxy::init()
{
    m_proxy = new TabMoveProxy;
    m_proxy->SetStartPoint(kStart);
    ShowProxy(m_proxy);
}

void TstTabMoveProxy::cleanup()
{
    delete m_proxy;
    m_proxy = nullptr;
}

void TstTabMoveProxy::isAnInvisiblePopup()
{
    // With no other popup open: making one while another is open has the offscreen
    // platform complain that it cannot hand the keyboard back.
    m_proxy->hide();
    TabMoveProxy proxy;
    QCOMPARE(proxy.windowType(), Qt::Popup);
    QVERIFY(proxy.windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(proxy.windowOpacity(), 0.0);
    QCOMPARE(proxy.geometry(), QRect(0, 0, 1, 1));
    QVERIFY(proxy.isHidden());
    QVERIFY(!proxy.hasMouseTracking());
    QVERIFY(!proxy.HasMoved());
    QCOMPARE(proxy.StartPoint(), QPoint());
}

void TstTabMoveProxy::startPointIsKept()
{
    QCOMPARE(m_proxy->StartPoint(), kStart);
    m_proxy->SetStartPoint(QPoint(-20, 7));
    QCOMPARE(m_proxy->StartPoint(), QPoint(-20, 7));
}

void TstTabMoveProxy::noMoveWhileOnStartPoint()
{
    QSignalSpy moves(m_proxy, &TabMoveProxy::SigButtonMove);
    SendMove(m_proxy, kStart);
    SendMove(m_proxy, kStart);
    SendMove(m_proxy, kStart);
    QCOMPARE(moves.count(), 0);
    QVERIFY(!m_proxy->HasMoved());
}

void TstTabMoveProxy::firstMoveAwayEmits_data()
{
    QTest::addColumn<QPoint>("to");

    QTest::newRow("one pixel right") << kStart + QPoint(1, 0);
    QTest::newRow("one pixel up") << kStart + QPoint(0, -1);
    QTest::newRow("far away") << QPoint(900, 700);
    QTest::newRow("negative") << QPoint(-5, -5);
}

void TstTabMoveProxy::firstMoveAwayEmits()
{
    QFETCH(QPoint, to);

    QSignalSpy moves(m_proxy, &TabMoveProxy::SigButtonMove);
    SendMove(m_proxy, kStart);
    QCOMPARE(moves.count(), 0);
    SendMove(m_proxy, to);
    QCOMPARE(moves.count(), 1);
    QVERIFY(m_proxy->HasMoved());
}

void TstTabMoveProxy::afterLeavingEveryMoveEmits()
{
    QSignalSpy moves(m_proxy, &TabMoveProxy::SigButtonMove);
    SendMove(m_proxy, kStart + QPoint(3, 0));
    QCOMPARE(moves.count(), 1);
    // Back on the start point: a real move now, it reports.
    SendMove(m_proxy, kStart);
    QCOMPARE(moves.count(), 2);
    SendMove(m_proxy, kStart);
    QCOMPARE(moves.count(), 3);
    SendMove(m_proxy, kStart + QPoint(3, 0));
    QCOMPARE(moves.count(), 4);
}

void TstTabMoveProxy::leftReleaseResetsMoved()
{
    QSignalSpy moves(m_proxy, &TabMoveProxy::SigButtonMove);
    QSignalSpy released(m_proxy, &TabPopupProxy::SigButtonRelease);
    SendMove(m_proxy, kStart + QPoint(10, 0));
    QVERIFY(m_proxy->HasMoved());

    SendRelease(m_proxy, kStart + QPoint(10, 0), Qt::LeftButton);
    QVERIFY(!m_proxy->HasMoved());
    QVERIFY(!m_proxy->isVisible());
    QCOMPARE(released.count(), 1);

    // The next hold starts unmoved again.
    ShowProxy(m_proxy);
    SendMove(m_proxy, kStart);
    QCOMPARE(moves.count(), 1);
    SendMove(m_proxy, kStart + QPoint(0, 1));
    QCOMPARE(moves.count(), 2);
}

void TstTabMoveProxy::otherReleaseKeepsHold()
{
    QSignalSpy moves(m_proxy, &TabMoveProxy::SigButtonMove);
    QSignalSpy released(m_proxy, &TabPopupProxy::SigButtonRelease);
    SendMove(m_proxy, kStart + QPoint(10, 0));
    SendRelease(m_proxy, kStart + QPoint(10, 0), Qt::RightButton);
    QVERIFY(m_proxy->isVisible());
    QVERIFY(m_proxy->HasMoved());
    QCOMPARE(released.count(), 0);
    SendMove(m_proxy, kStart);
    QCOMPARE(moves.count(), 2);
}

void TstTabMoveProxy::pressAndReleaseWithoutMotion()
{
    QSignalSpy moves(m_proxy, &TabMoveProxy::SigButtonMove);
    QSignalSpy released(m_proxy, &TabPopupProxy::SigButtonRelease);
    SendMove(m_proxy, kStart);
    SendRelease(m_proxy, kStart, Qt::LeftButton);
    QCOMPARE(moves.count(), 0);
    QCOMPARE(released.count(), 1);
    QVERIFY(!m_proxy->isVisible());
}

void TstTabMoveProxy::holdEndedByHideStartsUnmoved()
{
    // A hold may end without a left release: the owner or the window system hides
    // the popup. The next press must still not count a move onto its own point.
    QSignalSpy moves(m_proxy, &TabMoveProxy::SigButtonMove);
    SendMove(m_proxy, kStart + QPoint(10, 0));
    QCOMPARE(moves.count(), 1);
    m_proxy->hide();

    const QPoint nextPress(400, 300);
    m_proxy->SetStartPoint(nextPress);
    QVERIFY(!m_proxy->HasMoved());
    ShowProxy(m_proxy);
    SendMove(m_proxy, nextPress);
    QCOMPARE(moves.count(), 1);
    QVERIFY(!m_proxy->HasMoved());
}

KELTAB_TEST_MAIN(TstTabMoveProxy)
#include "tst_tabmoveproxy.moc"
