// SPDX-License-Identifier: MIT
#pragma once

// Real input through the X server's XTEST extension, for the tests that must see what
// a user's mouse and keyboard produce: the server's own enter/leave bookkeeping,
// pointer grabs of popups, the keyboard layout. QTest's events never go through the
// window system, so they cannot show those.
//
// libX11 and libXtst are loaded at run time, so that the suite builds without the X
// development packages; they stay loaded (unloading them would leave the leak checker
// unable to name the one-time allocations they keep until exit).

#include <QCursor>
#include <QGuiApplication>
#include <QImage>
#include <QList>
#include <QRect>
#include <QPoint>
#include <QProcess>
#include <QStringList>
#include <QtTest>

#include <dlfcn.h>

namespace KelTest {

class XInput
{
public:
    XInput()
    {
        m_x11 = dlopen("libX11.so.6", RTLD_NOW | RTLD_LOCAL);
        m_xtst = dlopen("libXtst.so.6", RTLD_NOW | RTLD_LOCAL);
        if (!m_x11 || !m_xtst)
            return;
        auto openDisplay = reinterpret_cast<void *(*)(const char *)>(dlsym(m_x11, "XOpenDisplay"));
        m_flush = reinterpret_cast<int (*)(void *)>(dlsym(m_x11, "XFlush"));
        m_sync = reinterpret_cast<int (*)(void *, int)>(dlsym(m_x11, "XSync"));
        m_closeDisplay = reinterpret_cast<int (*)(void *)>(dlsym(m_x11, "XCloseDisplay"));
        m_keysymToKeycode = reinterpret_cast<unsigned char (*)(void *, unsigned long)>(
            dlsym(m_x11, "XKeysymToKeycode"));
        m_motion = reinterpret_cast<int (*)(void *, int, int, int, unsigned long)>(
            dlsym(m_xtst, "XTestFakeMotionEvent"));
        m_button = reinterpret_cast<int (*)(void *, unsigned int, int, unsigned long)>(
            dlsym(m_xtst, "XTestFakeButtonEvent"));
        m_key = reinterpret_cast<int (*)(void *, unsigned int, int, unsigned long)>(
            dlsym(m_xtst, "XTestFakeKeyEvent"));
        m_keysymToModifiers = reinterpret_cast<unsigned int (*)(void *, unsigned long)>(
            dlsym(m_x11, "XkbKeysymToModifiers"));
        m_lockModifiers = reinterpret_cast<int (*)(void *, unsigned int, unsigned int, unsigned int)>(
            dlsym(m_x11, "XkbLockModifiers"));
        m_defaultRoot = reinterpret_cast<unsigned long (*)(void *)>(dlsym(m_x11, "XDefaultRootWindow"));
        m_getImage = reinterpret_cast<void *(*)(void *, unsigned long, int, int, unsigned int, unsigned int,
                                                unsigned long, int)>(dlsym(m_x11, "XGetImage"));
        m_getPixel = reinterpret_cast<unsigned long (*)(void *, int, int)>(dlsym(m_x11, "XGetPixel"));
        m_destroyImage = reinterpret_cast<int (*)(void *)>(dlsym(m_x11, "XDestroyImage"));
        m_queryTree = reinterpret_cast<int (*)(void *, unsigned long, unsigned long *, unsigned long *,
                                               unsigned long **, unsigned int *)>(dlsym(m_x11, "XQueryTree"));
        m_getGeometry = reinterpret_cast<int (*)(void *, unsigned long, unsigned long *, int *, int *, unsigned int *,
                                                 unsigned int *, unsigned int *, unsigned int *)>(
            dlsym(m_x11, "XGetGeometry"));
        m_free = reinterpret_cast<int (*)(void *)>(dlsym(m_x11, "XFree"));
        auto query = reinterpret_cast<int (*)(void *, int *, int *, int *, int *)>(
            dlsym(m_xtst, "XTestQueryExtension"));
        if (!openDisplay || !m_flush || !m_sync || !m_closeDisplay || !m_keysymToKeycode || !m_motion
            || !m_button || !m_key || !m_keysymToModifiers || !m_lockModifiers || !query)
            return;
        m_display = openDisplay(nullptr);
        int event = 0, error = 0, major = 0, minor = 0;
        if (m_display && !query(m_display, &event, &error, &major, &minor)) {
            m_closeDisplay(m_display);
            m_display = nullptr;
        }
    }

    ~XInput()
    {
        if (!m_display)
            return;
        for (unsigned int button = 1; button <= 3; ++button) {
            if (m_pressed & (1u << button))
                Button(button, false);
        }
        m_closeDisplay(m_display);
    }

    XInput(const XInput &) = delete;
    XInput &operator=(const XInput &) = delete;

    bool IsValid() const { return m_display != nullptr; }

    /** Why a test cannot run here, or an empty string when it can. */
    QString Unavailable() const
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            return QStringLiteral("needs an X server (run under xvfb-run with QT_QPA_PLATFORM=xcb)");
        if (!m_display)
            return QStringLiteral("the X server offers no XTEST extension, or libXtst is missing");
        return QString();
    }

    /** Moves the pointer in one jump, as a quick flick of a real mouse does. */
    void MoveTo(const QPoint &globalPos)
    {
        m_motion(m_display, -1, globalPos.x(), globalPos.y(), 0);
        m_sync(m_display, 0);
    }

    /** Moves the pointer in @p steps motions, as a slow hand does. */
    void GlideTo(const QPoint &from, const QPoint &to, int steps)
    {
        for (int i = 1; i <= steps; ++i) {
            MoveTo(from + (to - from) * i / steps);
            QTest::qWait(10);
        }
    }

    /** Presses or releases button 1 (left), 2 (middle) or 3 (right). */
    void Button(unsigned int button, bool press)
    {
        m_button(m_display, button, press ? 1 : 0, 0);
        m_sync(m_display, 0);
        if (press)
            m_pressed |= 1u << button;
        else
            m_pressed &= ~(1u << button);
    }

    void Click(unsigned int button = 1)
    {
        Button(button, true);
        Button(button, false);
    }

    /** Presses and releases the key that carries @p keysym in the server's present layout. */
    void Key(unsigned long keysym)
    {
        const unsigned int code = m_keysymToKeycode(m_display, keysym);
        if (code == 0)
            return;
        m_key(m_display, code, 1, 0);
        m_key(m_display, code, 0, 0);
        m_sync(m_display, 0);
    }

    /** Presses (@p down) or releases the key that carries @p keysym in the server's present layout. */
    void KeySym(unsigned long keysym, bool down)
    {
        const unsigned int code = m_display ? m_keysymToKeycode(m_display, keysym) : 0;
        if (code == 0)
            return;
        m_key(m_display, code, down ? 1 : 0, 0);
        m_sync(m_display, 0);
    }

    /** Presses (@p down) or releases the key with the X key code @p keyCode (its physical position). */
    void SendKeyCode(unsigned int keyCode, bool down)
    {
        if (m_display)
            m_key(m_display, keyCode, down ? 1 : 0, 0);
    }

    /**
     * What the X screen shows in @p rect (screen coordinates), as the user sees it;
     * a null image when the server cannot tell. The screen is taken to be 24-bit
     * TrueColor (0xRRGGBB pixels), as xvfb-run makes it.
     */
    QImage Grab(const QRect &rect)
    {
        if (!m_display || !m_defaultRoot || !m_getImage || !m_getPixel || !m_destroyImage)
            return QImage();
        m_sync(m_display, 0);
        void *image = m_getImage(m_display, m_defaultRoot(m_display), rect.x(), rect.y(), unsigned(rect.width()),
                                 unsigned(rect.height()), ~0ul, ZPixmap);
        if (!image)
            return QImage();
        QImage grabbed(rect.size(), QImage::Format_RGB32);
        for (int y = 0; y < rect.height(); ++y) {
            for (int x = 0; x < rect.width(); ++x)
                grabbed.setPixel(x, y, 0xff000000u | uint(m_getPixel(image, x, y) & 0xffffffu));
        }
        m_destroyImage(image);
        return grabbed;
    }

    /**
     * The screen rectangles of the top-level windows of the X screen, in stacking
     * order (another client's, such as a nested compositor's output); empty when the
     * server cannot tell.
     */
    QList<QRect> TopLevelWindows()
    {
        QList<QRect> windows;
        if (!m_display || !m_defaultRoot || !m_queryTree || !m_getGeometry || !m_free)
            return windows;
        unsigned long root = 0, parent = 0;
        unsigned long *children = nullptr;
        unsigned int count = 0;
        if (!m_queryTree(m_display, m_defaultRoot(m_display), &root, &parent, &children, &count))
            return windows;
        for (unsigned int i = 0; i < count; ++i) {
            unsigned long windowRoot = 0;
            int x = 0, y = 0;
            unsigned int width = 0, height = 0, border = 0, depth = 0;
            if (m_getGeometry(m_display, children[i], &windowRoot, &x, &y, &width, &height, &border, &depth))
                windows << QRect(x + int(border), y + int(border), int(width), int(height));
        }
        if (children)
            m_free(children);
        return windows;
    }

    /** Waits until the server has handled every request sent so far. */
    void Sync()
    {
        if (m_display)
            m_sync(m_display, 0);
    }

    /**
     * Sets the server's keyboard layout (for example "us", "fr") with setxkbmap and
     * turns Num Lock on, so that the keypad types digits whatever the last layout left.
     */
    bool SetLayout(const QString &layout)
    {
        if (!m_display
            || QProcess::execute(QStringLiteral("setxkbmap"), {QStringLiteral("-layout"), layout}) != 0)
            return false;
        const unsigned int numLock = m_keysymToModifiers(m_display, KeyNumLock);
        m_lockModifiers(m_display, UseCoreKeyboard, numLock, numLock);
        m_sync(m_display, 0);
        return true;
    }

    static constexpr unsigned long KeyEscape = 0xff1b;
    static constexpr unsigned long KeyNumLock = 0xff7f;

private:
    static constexpr unsigned int UseCoreKeyboard = 0x0100; // XkbUseCoreKbd
    static constexpr int ZPixmap = 2;

    void *m_x11 = nullptr;
    void *m_xtst = nullptr;
    void *m_display = nullptr;
    unsigned int m_pressed = 0;
    int (*m_flush)(void *) = nullptr;
    int (*m_sync)(void *, int) = nullptr;
    int (*m_closeDisplay)(void *) = nullptr;
    unsigned char (*m_keysymToKeycode)(void *, unsigned long) = nullptr;
    int (*m_motion)(void *, int, int, int, unsigned long) = nullptr;
    int (*m_button)(void *, unsigned int, int, unsigned long) = nullptr;
    int (*m_key)(void *, unsigned int, int, unsigned long) = nullptr;
    unsigned int (*m_keysymToModifiers)(void *, unsigned long) = nullptr;
    int (*m_lockModifiers)(void *, unsigned int, unsigned int, unsigned int) = nullptr;
    unsigned long (*m_defaultRoot)(void *) = nullptr;
    void *(*m_getImage)(void *, unsigned long, int, int, unsigned int, unsigned int, unsigned long, int) = nullptr;
    unsigned long (*m_getPixel)(void *, int, int) = nullptr;
    int (*m_destroyImage)(void *) = nullptr;
    int (*m_queryTree)(void *, unsigned long, unsigned long *, unsigned long *, unsigned long **, unsigned int *) = nullptr;
    int (*m_getGeometry)(void *, unsigned long, unsigned long *, int *, int *, unsigned int *, unsigned int *,
                         unsigned int *, unsigned int *) = nullptr;
    int (*m_free)(void *) = nullptr;
};

} // namespace KelTest
