// SPDX-License-Identifier: MIT
#include "xtestkeyboard.h"

#include <QProcess>
#include <QStringList>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

XTestKeyboard::XTestKeyboard()
    : m_display(XOpenDisplay(nullptr))
{
    int event = 0, error = 0, major = 0, minor = 0;
    m_valid = m_display && XTestQueryExtension(m_display, &event, &error, &major, &minor);
}

XTestKeyboard::~XTestKeyboard()
{
    if (m_display)
        XCloseDisplay(m_display);
}

bool XTestKeyboard::IsValid() const
{
    return m_valid;
}

bool XTestKeyboard::SetLayout(const QString &layout)
{
    if (!m_valid || QProcess::execute(QStringLiteral("setxkbmap"), {QStringLiteral("-layout"), layout}) != 0)
        return false;
    // Num Lock on, so that the keypad types digits whatever the last layout left.
    const unsigned int numLock = XkbKeysymToModifiers(m_display, XK_Num_Lock);
    XkbLockModifiers(m_display, XkbUseCoreKbd, numLock, numLock);
    XSync(m_display, False);
    return true;
}

void XTestKeyboard::Send(unsigned int keyCode, bool down)
{
    if (m_valid)
        XTestFakeKeyEvent(m_display, keyCode, down ? True : False, CurrentTime);
}

void XTestKeyboard::Sync()
{
    if (m_valid)
        XSync(m_display, False);
}
