#include "keltabtest.h"

#include "tabmoveproxy.h"

#include <QCursor>
#include <QScreen>

#include <dlfcn.h>

namespace {

// Real pointer input through the X server's XTEST extension. The libraries are
// loaded at run time so that the suite builds without the X development packages.
class XPointer
{
public:
    XPointer()
    {
        m_x11 = dlopen("libX11.so.6", RTLD_NOW | RTLD_LOCAL);
        m_xtst = dlopen("libXtst.so.6", RTLD_NOW | RTLD_LOCAL);
        if (!m_x11 || !m_xtst)
            return;
        auto openDisplay = reinterpret_cast<void *(*)(const char *)>(dlsym(m_x11, "XOpenDisplay"));
        m_flush = reinterpret_cast<int (*)(void *)>(dlsym(m_x11, "XFlush"));
        m_closeDisplay = reinterpret_cast<int (*)(void *)>(dlsym(m_x11, "XCloseDisplay"));
        m_motion = reinterpret_cast<int (*)(void *, int, int, int, unsigned long)>(
            dlsym(m_xtst, "XTestFakeMotionEvent"));
        m_button = reinterpret_cast<int (*)(void *, unsigned int, int, unsigned long)>(
            dlsym(m_xtst, "XTestFakeButtonEvent"));
        auto query = reinterpret_cast<int (*)(void *, int *, int *, int *, int *)>(
            dlsym(m_xtst, "XTestQueryExtension"));
        if (!openDisplay || !m_flush || !m_closeDisplay || !m_motion || !m_button || !query)
            return;
        m_display = openDisplay(nullptr);
        int event = 0, error = 0, major = 0, minor = 0;
        if (m_display && !query(m_display, &event, &error, &major, &minor)) {
            m_closeDisplay(m_display);
            m_display = nullptr;
        }
    }

    ~XPointer()
    {
        if (m_display) {
            if (m_pressed)
                Button(false);
            m_closeDisplay(m_display);
        }
        // The libraries stay loaded: unloading them would leave the leak checker
        // unable to name the one-time allocations they keep until exit.
    }

    bool IsValid() const { return m_display != nullptr; }

    void MoveTo(const QPoint &globalPos)
    {
        m_motion(m_display, -1, globalPos.x(), globalPos.y(), 0);
        m_flush(m_display);
    }

    void Button(bool press)
    {
        m_button(m_display, 1, press ? 1 : 0, 0);
        m_flush(m_display);
        m_pressed = press;
    }

private:
    void *m_x11 = nullptr;
    void *m_xtst = nullptr;
    void *m_display = nullptr;
    bool m_pressed = false;
    int (*m_flush)(void *) = nullptr;
    int (*m_closeDisplay)(void *) = nullptr;
    int (*m_motion)(void *, int, int, int, unsigned long) = nullptr;
    int (*m_button)(void *, unsigned int, int, unsigned long) = nullptr;
};

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
        m_proxy->SetStartPoint(event->globalPos());
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
    std::unique_ptr<XPointer> m_pointer;
};

void TstTabMoveProxyPointer::initTestCase()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        QSKIP("needs an X server (run under xvfb-run with QT_QPA_PLATFORM=xcb)");
    m_pointer = std::make_unique<XPointer>();
    if (!m_pointer->IsValid())
        QSKIP("the X server offers no XTEST extension, or libXtst is missing");
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
    m_pointer->Button(true);
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

    m_pointer->Button(false);
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
    m_pointer->Button(true);
    QTRY_COMPARE(area.presses, 1);
    QTRY_VERIFY(QTest::qWaitForWindowExposed(&proxy));
    m_pointer->Button(false);
    QTRY_COMPARE(released.count(), 1);
    // Whatever the window system sent on the press point itself was no drag.
    QCOMPARE(moves.count(), 0);
}

KELTAB_TEST_MAIN(TstTabMoveProxyPointer)
#include "tst_tabmoveproxypointer.moc"
