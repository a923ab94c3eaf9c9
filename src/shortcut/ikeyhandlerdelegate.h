// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

/**
 * What the host does for the browser's keyboard shortcuts. Implemented by the host
 * and handed to BrowserKeyHandler::SetKeyHandlerDelegate(); the handler does not own
 * it. Each operation names the keys that call it; what the operations named after
 * their keys mean is the host's to decide.
 *
 * @ingroup shortcuts
 */
class KELTABCONTAINER_EXPORT IKeyHandlerDelegate
{
public:
    /** Nothing to set up: the interface has no state. */
    IKeyHandlerDelegate();
    /** Interfaces copy freely; there is no state to copy. */
    IKeyHandlerDelegate(const IKeyHandlerDelegate &other);
    /** Interfaces copy freely; there is no state to copy. */
    IKeyHandlerDelegate &operator=(const IKeyHandlerDelegate &other);
    /** Virtual, so that a delegate may be deleted through this interface. */
    virtual ~IKeyHandlerDelegate();

    /** Alt+Left. */
    virtual void ActionBack() = 0;
    /** Alt+Right. */
    virtual void ActionForward() = 0;
    /** F5, Ctrl+R. */
    virtual void ActionRefresh() = 0;
    /** Ctrl+F5. */
    virtual void ActionRefreshNoCache() = 0;
    /** Ctrl+T. */
    virtual void ActionNewTab() = 0;
    /** Ctrl+W, Ctrl+F4. */
    virtual void ActionCloseTab() = 0;
    /**
     * Ctrl+1 ... Ctrl+8 and Ctrl+keypad 1 ... 8.
     * @param index the tab to select, 0 for the 1 key ... 7 for the 8 key
     */
    virtual void ActionSelectTab(int index) = 0;
    /** Ctrl+Tab, Ctrl+Page Down. */
    virtual void ActionNextTab() = 0;
    /** Ctrl+Page Up, Ctrl+Shift+Tab. */
    virtual void ActionPreviousTab() = 0;
    /** Ctrl+9, Ctrl+keypad 9 (usually: the last tab). */
    virtual void ActionCtrl9() = 0;
    /** Ctrl+0, Ctrl+keypad 0. */
    virtual void ZoomDefault() = 0;
    /** Ctrl+= (the key that carries = and +). The keypad + is not bound. */
    virtual void ZoomIn() = 0;
    /** Ctrl+- (the key that carries - and _). The keypad - is not bound. */
    virtual void ZoomOut() = 0;
    /** Ctrl+D. */
    virtual void ActionCtrlD() = 0;
    /** Ctrl+J. */
    virtual void ActionCtrlJ() = 0;
    /** Ctrl+F. */
    virtual void ShowFindDlg() = 0;
    /** F12. */
    virtual void ShowDevTools() = 0;
    /** Ctrl+H. */
    virtual void ActionCtrlH() = 0;
    /** Ctrl+Shift+Delete. */
    virtual void ActionCtrlShiftDelete() = 0;
    /** @return whether the browser is full screen; asked by F11 and Esc. */
    virtual bool IsFullscreen() = 0;
    /** F11 when not full screen. */
    virtual void EnterFullscreen() = 0;
    /** F11 or Esc when full screen. */
    virtual void ExitFullscreen() = 0;
    /** Ctrl+Shift+T. */
    virtual void ActionRecoverClosedTab() = 0;
    /** Alt+Shift+Up. */
    virtual void ActionAltShiftUp() = 0;
    /** Alt+Shift+Down. */
    virtual void ActionAltShiftDown() = 0;
    /** Alt+C. */
    virtual void ActionAltC() = 0;
    /** Alt+E. */
    virtual void ActionAltE() = 0;
};
