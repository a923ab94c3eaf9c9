// SPDX-License-Identifier: MIT
// BrowserTabArrowProxyEx: an invisible, parentless 1 x 1 popup that ends a hold on a
// left release (through the window system's path) or on any hide.

#include "idleproxy.h"
#include "keltabtest.h"

#include "browsertabarrowproxyex.h"

#include <QWindow>

#include <memory>

class TstBrowserTabArrowProxyEx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void construction();
    void leftReleaseHides();
    void otherReleaseKeepsIt();
    void pressIsAccepted();
    void anyHideReports();
    void destructionDoesNotReport();
};

void TstBrowserTabArrowProxyEx::cleanup()
{
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(nullptr));
}

void TstBrowserTabArrowProxyEx::construction()
{
    BrowserTabArrowProxyEx proxy;
    QVERIFY(!proxy.parentWidget());
    KelTest::VerifyIdleProxy(proxy);
}

void TstBrowserTabArrowProxyEx::leftReleaseHides()
{
    BrowserTabArrowProxyEx proxy;
    QSignalSpy released(&proxy, &BrowserTabArrowProxyEx::SigButtonRelease);
    proxy.show();
    QVERIFY(QTest::qWaitForWindowExposed(&proxy));
    QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(&proxy));
    QTest::mouseRelease(proxy.windowHandle(), Qt::LeftButton, {}, QPoint(0, 0));
    QVERIFY(proxy.isHidden());
    QCOMPARE(released.count(), 1);
}

void TstBrowserTabArrowProxyEx::otherReleaseKeepsIt()
{
    BrowserTabArrowProxyEx proxy;
    QSignalSpy released(&proxy, &BrowserTabArrowProxyEx::SigButtonRelease);
    proxy.show();
    QVERIFY(QTest::qWaitForWindowExposed(&proxy));
    QMouseEvent rightRelease(QEvent::MouseButtonRelease, QPointF(0, 0), QPointF(proxy.mapToGlobal(QPoint(0, 0))),
                             Qt::RightButton, Qt::NoButton, Qt::NoModifier);
    rightRelease.setAccepted(false);
    QCoreApplication::sendEvent(&proxy, &rightRelease);
    QVERIFY(rightRelease.isAccepted());
    QVERIFY(proxy.isVisible());
    QCOMPARE(released.count(), 0);
    proxy.hide();
    QCOMPARE(released.count(), 1);
}

void TstBrowserTabArrowProxyEx::pressIsAccepted()
{
    BrowserTabArrowProxyEx proxy;
    proxy.show();
    QVERIFY(QTest::qWaitForWindowExposed(&proxy));
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(0, 0), QPointF(proxy.mapToGlobal(QPoint(0, 0))), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    press.setAccepted(false);
    QCoreApplication::sendEvent(&proxy, &press);
    QVERIFY(press.isAccepted());
    QVERIFY(proxy.isVisible());
    proxy.hide();
}

void TstBrowserTabArrowProxyEx::anyHideReports()
{
    BrowserTabArrowProxyEx proxy;
    QSignalSpy released(&proxy, &BrowserTabArrowProxyEx::SigButtonRelease);
    proxy.show();
    QVERIFY(QTest::qWaitForWindowExposed(&proxy));
    proxy.close();
    QCOMPARE(released.count(), 1);
}

void TstBrowserTabArrowProxyEx::destructionDoesNotReport()
{
    auto proxy = std::make_unique<BrowserTabArrowProxyEx>();
    int reports = 0;
    QObject context;
    connect(proxy.get(), &BrowserTabArrowProxyEx::SigButtonRelease, &context, [&reports] { ++reports; });
    proxy->show();
    QVERIFY(QTest::qWaitForWindowExposed(proxy.get()));
    proxy.reset();
    QCOMPARE(reports, 0);
}

KELTAB_TEST_MAIN(TstBrowserTabArrowProxyEx)
#include "tst_browsertabarrowproxyex.moc"
