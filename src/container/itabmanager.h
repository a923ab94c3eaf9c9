// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"
#include "tabdata.h"

class TabContainer;

/**
 * The host's tab manager, handed to a tab bar with SetTabManager().
 *
 * The bars only store and return the pointer; they never call it and never own it.
 * The operations are those a host's pages and tools need to reach the pages behind
 * the tabs without knowing the window.
 *
 * @ingroup pages
 */
class KELTABCONTAINER_EXPORT ITabManager
{
public:
    /** Nothing to set up: the interface has no state. */
    ITabManager() = default;
    /** Interfaces copy freely; there is no state to copy. */
    ITabManager(const ITabManager &) = default;
    /** Interfaces copy freely; there is no state to copy. */
    ITabManager &operator=(const ITabManager &) = default;
    /** Virtual, so that a manager may be deleted through this interface. */
    virtual ~ITabManager();

    /** @return the page that shows @p tab, or null when no page does. */
    virtual TabContainer *GetTabContainer(TabDataPtr tab) = 0;
    /** Opens @p tab in a new tab (or activates the tab that already shows it); @return its index. */
    virtual int OpenTab(TabDataPtr tab, bool activate) = 0;
    /** Closes the tab that shows @p tab; @return false when there is none or it refused. */
    virtual bool CloseTab(TabDataPtr tab) = 0;
    /** @return the page of the current tab, or null. */
    virtual TabContainer *GetCurrentTabContainer() = 0;
};
