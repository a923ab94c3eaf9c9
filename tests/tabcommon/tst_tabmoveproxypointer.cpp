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

// A proxy, a strip in the middle of the screen (well away from the proxy's single
// pixel at (0, 0)) that starts holds on it, and spies on what the proxy reports.
struct Scene
{
    Scene()
    {
        area.setGeometry(QRect(QGuiApplication::primaryScreen()->geometry().center() - QPoint(100, 50),
                               QSize(200, 100)));
        area.show();
    }

    TabMoveProxy proxy;
    PressArea area{&proxy};
    QSignalSpy moves{&proxy, &TabMoveProxy::SigButtonMove};
    QSignalSpy released{&proxy, &TabPopupProxy::SigButtonRelease};
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
    void PressOn(Scene &scene, const QPoint &press);

    std::unique_ptr<KelTest::XInput> m_pointer;
};

void TstTabMoveProxyPointer::initTestCase()
{
    m_pointer = std::make_unique<KelTest::XInput>();
    const QString why = m_pointer->Unavailable();
    if (!why.isEmpty())
        QSKIP(qPrintable(why));
}

// Presses button 1 on the scene's strip at @p press (global), as a hand does: the
// pointer gets there first. The hold has begun when this returns, unless the test
// has failed.
void TstTabMoveProxyPointer::PressOn(Scene &scene, const QPoint &press)
{
    m_pointer->MoveTo(press);
    QTRY_COMPARE(QCursor::pos(), press);
    m_pointer->Button(1, true);
    QTRY_COMPARE(scene.area.presses, 1);
}

void TstTabMoveProxyPointer::popupFollowsARealDrag()
{
    Scene scene;
    QVERIFY(QTest::qWaitForWindowExposed(&scene.area));
    const QPoint press = scene.area.mapToGlobal(QPoint(50, 50));
    PressOn(scene, press);
    if (QTest::currentTestFailed())
        return;
    QVERIFY(scene.proxy.isVisible());
    QTRY_VERIFY(QTest::qWaitForWindowExposed(&scene.proxy));
    QCOMPARE(scene.proxy.StartPoint(), press);

    // Far from the popup's single pixel at (0, 0), and out of the area too.
    m_pointer->MoveTo(press + QPoint(30, 0));
    QTRY_VERIFY(scene.moves.count() >= 1);
    QVERIFY(scene.proxy.HasMoved());
    const int before = scene.moves.count();
    m_pointer->MoveTo(press + QPoint(400, 120));
    QTRY_VERIFY(scene.moves.count() > before);
    QCOMPARE(scene.area.presses, 1);
    QCOMPARE(scene.released.count(), 0);

    m_pointer->Button(1, false);
    QTRY_COMPARE(scene.released.count(), 1);
    QVERIFY(!scene.proxy.isVisible());
    QVERIFY(!scene.proxy.HasMoved());
}

void TstTabMoveProxyPointer::pressAndReleaseWithoutMotion()
{
    Scene scene;
    QVERIFY(QTest::qWaitForWindowExposed(&scene.area));
    const QPoint press = scene.area.mapToGlobal(QPoint(120, 40));
    PressOn(scene, press);
    if (QTest::currentTestFailed())
        return;
    QTRY_VERIFY(QTest::qWaitForWindowExposed(&scene.proxy));
    m_pointer->Button(1, false);
    QTRY_COMPARE(scene.released.count(), 1);
    // Whatever the window system sent on the press point itself was no drag.
    QCOMPARE(scene.moves.count(), 0);
}

KELTAB_TEST_MAIN(TstTabMoveProxyPointer)
#include "tst_tabmoveproxypointer.moc"
