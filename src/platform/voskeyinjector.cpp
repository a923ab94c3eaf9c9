// SPDX-License-Identifier: MIT
#include "voskeyinjector.h"

#include "vosshortcut.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

bool VosKeyInjector::InjectKeyClick(unsigned int virtualKey)
{
#ifdef Q_OS_WIN
    // Scan code 0 and no extra information: the receiving window maps the key
    // itself, exactly as for a key typed on the keyboard.
    keybd_event(static_cast<BYTE>(virtualKey), 0, 0, 0);
    keybd_event(static_cast<BYTE>(virtualKey), 0, KEYEVENTF_KEYUP, 0);
    return true;
#else
    const int qtKey = VosShortcut::QtKeyFromVirtualKey(virtualKey);
    if (qtKey == 0)
        return false;
    QWidget *target = QApplication::focusWidget();
    if (!target)
        return false;
    // The keypad keys have codes of their own; the widget must see them as keypad
    // presses to tell them from the main keys.
    const Qt::KeyboardModifiers modifiers =
        (virtualKey >= 0x60 && virtualKey <= 0x6F) ? Qt::KeypadModifier : Qt::NoModifier;
    // Posted, not sent: like the system queue on Windows, the press arrives after the
    // caller (a gesture handler in the middle of a mouse release) has returned.
    QCoreApplication::postEvent(target, new QKeyEvent(QEvent::KeyPress, qtKey, modifiers));
    QCoreApplication::postEvent(target, new QKeyEvent(QEvent::KeyRelease, qtKey, modifiers));
    return true;
#endif
}
