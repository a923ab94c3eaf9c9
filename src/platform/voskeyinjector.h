// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

/**
 * Synthesises key presses as if the user had typed them, for actions such as the
 * Page Up / Page Down mouse gestures that let the focused page scroll by itself.
 *
 * On Windows the press and release go into the system input queue (keybd_event),
 * so they reach whichever window has the keyboard focus when the queue is read.
 * Elsewhere they are posted as a QKeyEvent press and release to
 * QApplication::focusWidget(), to be delivered by the event loop; without a focus
 * widget nothing is posted.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT VosKeyInjector
{
public:
    /** Not constructible: every operation is static. */
    VosKeyInjector() = delete;

    /**
     * Injects a press and then a release of the key with the Windows virtual-key
     * code @p virtualKey (for example 0x21 Page Up, 0x22 Page Down).
     * @return false when nothing could be injected (no focus widget, or a code
     * without a Qt key on platforms other than Windows)
     */
    static bool InjectKeyClick(unsigned int virtualKey);
};
