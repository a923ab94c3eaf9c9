// SPDX-License-Identifier: MIT
#include "eventpoint_p.h"
#include "keltabtest.h"

#include "tabmoveproxy.h"
#include "xinput.h"

#include <QCursor>
#include <QScreen>

namespace {

// Stands for a tab strip: a press on it starts a hold on the proxy, as the bars do.
class PressArea : public QWidget
{
public:
    explicit PressArea(TabMoveProxy *proxy)
        : m_proxy(proxy)
    {
    }

    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        ++presses;
        m_proxy->SetStartPoint(KelEventGlobalPos(event));
        m_proxy->show();
    }

private:
    TabMoveProxy *m_proxy;
};

} // namespace

// The move proxy under the window system's own pointer: while the 1 x 1 popup is
// shown it must receive the drag wherever the pointer goes, and the release.
class TstTabMoveProxyPointer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void popupFollowsARealDrag();
    void pressAndReleaseWithoutMotion();

private:
    std::unique_ptr<KelTest::XInput> m_pointer;
};

void TstTabMoveProxyPointer::initTestCase()
{
    m_pointer = std::make_unique<KelTest::XInput>();
    const QString why = m_pointer->Unavailable();
    if (!why.isEmpty())
        QSKIP(qPrintable(why));
}

void TstTabMoveProxyPointer::popupFollowsARealDrag()
{
    TabMoveProxy proxy;
    PressArea area(&proxy);
    area.setGeometry(QRect(QGuiApplication::primaryScreen()->geometry().center() - QPoint(100, 50),
                           QSize(200, 100)));
    area.show();
    QVERIFY(QTest::qWaitForWindowExposed(&area));
    QSignalSpy moves(&proxy, &TabMoveProxy::SigButtonMove);
    QSignalSpy released(&proxy, &TabPopupProxy::SigButtonRelease);

    const QPoint press = area.mapToGlobal(QPoint(50, 50));
    m_pointer->MoveTo(press);
    QTRY_COMPARE(QCursor::pos(), press);
    m_pointer->Button(1, true);
    QTRY_COMPARE(area.presses, 1);
    QVERIFY(proxy.isVisible());
    QTRY_VERIFY(QTest::qWaitForWindowExposed(&proxy));
    QCOMPARE(proxy.StartPoint(), press);

    // Far from the popup's single pixel at (0, 0), and out of the area too.
    m_pointer->MoveTo(press + QPoint(30, 0));
    QTRY_VERIFY(moves.count() >= 1);
    QVERIFY(proxy.HasMoved());
    const int before = moves.count();
    m_pointer->MoveTo(press + QPoint(400, 120));
    QTRY_VERIFY(moves.count() > before);
    QCOMPARE(area.presses, 1);
    QCOMPARE(released.count(), 0);

    m_pointer->Button(1, false);
    QTRY_COMPARE(released.count(), 1);
    QVERIFY(!proxy.isVisible());
    QVERIFY(!proxy.HasMoved());
}

void TstTabMoveProxyPointer::pressAndReleaseWithoutMotion()
{
    TabMoveProxy proxy;
    PressArea area(&proxy);
    area.setGeometry(QRect(QGuiApplication::primaryScreen()->geometry().center() - QPoint(100, 50),
                           QSize(200, 100)));
    area.show();
    QVERIFY(QTest::qWaitForWindowExposed(&area));
    QSignalSpy moves(&proxy, &TabMoveProxy::SigButtonMove);
    QSignalSpy released(&proxy, &TabPopupProxy::SigButtonRelease);

    const QPoint press = area.mapToGlobal(QPoint(120, 40));
    m_pointer->MoveTo(press);
    QTRY_COMPARE(QCursor::pos(), press);
    m_pointer->Button(1, true);
    QTRY_COMPARE(area.presses, 1);
    QTRY_VERIFY(QTest::qWaitForWindowExposed(&proxy));
    m_pointer->Button(1, false);
    QTRY_COMPARE(released.count(), 1);
    // Whatever the window system sent on the press point itself was no drag.
    QCOMPARE(moves.count(), 0);
}

KELTAB_TEST_MAIN(TstTabMoveProxyPointer)
#include "tst_tabmoveproxypointer.moc"
