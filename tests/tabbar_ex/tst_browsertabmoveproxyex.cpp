// SPDX-License-Identifier: MIT
// BrowserTabMoveProxyEx: the drag popup reports moves away from the press point and
// the end of the drag, through the window system's path.

#include "keltabtest.h"

#include "browsertabmoveproxyex.h"

#include <QWindow>

class TstBrowserTabMoveProxyEx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void construction();
    void movesAfterLeavingStartPoint();
    void releaseEndsDrag();
};

void TstBrowserTabMoveProxyEx::cleanup()
{
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(nullptr));
}

void TstBrowserTabMoveProxyEx::construction()
{
    BrowserTabMoveProxyEx proxy;
    QVERIFY(!proxy.parentWidget());
    QVERIFY(proxy.windowFlags() & Qt::Popup);
    QVERIFY(proxy.windowFlags() & Qt::FramelessWindowHint);
    QCOMPARE(proxy.windowOpacity(), 0.0);
    QCOMPARE(proxy.size(), QSize(1, 1));
    QVERIFY(proxy.isHidden());
    QVERIFY(!proxy.HasMoved());
    proxy.SetStartPoint(QPoint(30, 40));
    QCOMPARE(proxy.StartPoint(), QPoint(30, 40));
}

void TstBrowserTabMoveProxyEx::movesAfterLeavingStartPoint()
{
    BrowserTabMoveProxyEx proxy;
    QSignalSpy moved(&proxy, &BrowserTabMoveProxyEx::SigButtonMove);
    proxy.show();
    QVERIFY(QTest::qWaitForWindowExposed(&proxy));
    const QPoint start = proxy.mapToGlobal(QPoint(0, 0));
    proxy.SetStartPoint(start);
    auto move = [&proxy](const QPoint &global) {
        QMouseEvent event(QEvent::MouseMove, proxy.mapFromGlobal(global), global, Qt::NoButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&proxy, &event);
    };
    move(start);
    QCOMPARE(moved.count(), 0);
    move(start + QPoint(5, 0));
    QCOMPARE(moved.count(), 1);
    QVERIFY(proxy.HasMoved());
    // Once away, coming back to the start point is a move too.
    move(start);
    QCOMPARE(moved.count(), 2);
    proxy.hide();
}

void TstBrowserTabMoveProxyEx::releaseEndsDrag()
{
    BrowserTabMoveProxyEx proxy;
    QSignalSpy released(&proxy, &BrowserTabMoveProxyEx::SigButtonRelease);
    proxy.show();
    QVERIFY(QTest::qWaitForWindowExposed(&proxy));
    proxy.SetStartPoint(proxy.mapToGlobal(QPoint(0, 0)));
    QTest::mouseMove(proxy.windowHandle(), QPoint(0, 0));
    QTest::mouseRelease(proxy.windowHandle(), Qt::LeftButton, {}, QPoint(0, 0));
    QVERIFY(proxy.isHidden());
    QCOMPARE(released.count(), 1);
    QVERIFY(!proxy.HasMoved());
}

KELTAB_TEST_MAIN(TstBrowserTabMoveProxyEx)
#include "tst_browsertabmoveproxyex.moc"
