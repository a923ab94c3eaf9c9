// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/**
 * The X server's keyboard, for tests that need real keys: switches the layout with
 * setxkbmap and sends key presses through the XTest extension, by X key code. Kept
 * apart from the tests so that Xlib's macros (KeyPress, None, ...) never meet Qt's
 * names.
 */
class XTestKeyboard
{
public:
    XTestKeyboard();
    ~XTestKeyboard();
    XTestKeyboard(const XTestKeyboard &) = delete;
    XTestKeyboard &operator=(const XTestKeyboard &) = delete;

    /** @return true when the display opened and has the XTest extension. */
    bool IsValid() const;
    /** Sets the server's layout (for example "us", "fr") and turns Num Lock on. */
    bool SetLayout(const QString &layout);
    /** Presses (@p down) or releases the key with the X key code @p keyCode. */
    void Send(unsigned int keyCode, bool down);
    /** Waits until the server has handled every request sent so far. */
    void Sync();

private:
    struct _XDisplay *m_display = nullptr;
    bool m_valid = false;
};
