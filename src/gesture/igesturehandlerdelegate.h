// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QRect>

/**
 * What the host does for the gestures that concern its tabs and pages, and where it
 * wants the gesture toast. Implemented by the host and handed to
 * BrowserGestureHandler::SetGestureHandlerDelegate(); the handler does not own it.
 *
 * @ingroup gestures
 */
class KELTABCONTAINER_EXPORT IGestureHandlerDelegate
{
public:
    /** Nothing to set up: the interface has no state. */
    IGestureHandlerDelegate();
    /** Interfaces copy freely; there is no state to copy. */
    IGestureHandlerDelegate(const IGestureHandlerDelegate &other);
    /** Interfaces copy freely; there is no state to copy. */
    IGestureHandlerDelegate &operator=(const IGestureHandlerDelegate &other);
    /** Virtual, so that a delegate may be deleted through this interface. */
    virtual ~IGestureHandlerDelegate();

    /** BrowserActionBack: go back in the current page's history. */
    virtual void ActionBack() = 0;
    /** BrowserActionForward: go forward in the current page's history. */
    virtual void ActionForward() = 0;
    /** BrowserActionReload: reload the current page. */
    virtual void ActionRefresh() = 0;
    /** BrowserActionNewTab: open a new tab. */
    virtual void ActionNewTab() = 0;
    /** BrowserActionCloseTab: close the current tab. */
    virtual void ActionCloseTab() = 0;
    /** BrowserActionCloseAll: close every tab. */
    virtual void ActionCloseAllTabs() = 0;
    /** BrowserActionPreviousTab: select the tab left of the current one. */
    virtual void ActionPreviousTab() = 0;
    /** BrowserActionNextTab: select the tab right of the current one. */
    virtual void ActionNextTab() = 0;
    /**
     * @return the rectangle, in global screen coordinates, in whose centre the
     * gesture toast is shown (usually the page area). Asked on every toast update.
     */
    virtual QRect GetToastArea() = 0;
    /** BrowserActionRecoverClosedTab: reopen the most recently closed tab. */
    virtual void ActionRecoverClosedTab() = 0;
};
