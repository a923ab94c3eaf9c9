// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

/**
 * Base for objects that re-apply their pixel metrics when the DPI factor changes.
 *
 * Every live adapter gets AdjustForDpi() after DpiTool::SetScaleFactor() changes the
 * factor in force, or when the primary screen's logical DPI changes while no fixed
 * factor is set. An adapter registers itself on construction and unregisters on
 * destruction, so a destroyed adapter is never called, even when another adapter
 * deletes it from inside its own AdjustForDpi().
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT IDpiAdapter
{
public:
    /** Registers the adapter: from now on it is told of DPI changes. */
    IDpiAdapter();
    /** Registers the copy as an adapter of its own; nothing is taken from @p other. */
    IDpiAdapter(const IDpiAdapter &other);
    /** Changes nothing: each adapter stays registered as it is. */
    IDpiAdapter &operator=(const IDpiAdapter &other);
    /** Unregisters the adapter; it is never called again. */
    virtual ~IDpiAdapter();

    /** Called on the GUI thread after the DPI factor changed. The default does nothing. */
    virtual void AdjustForDpi();

    /** Calls AdjustForDpi() on every live adapter. DpiTool calls it; hosts rarely need to. */
    static void NotifyAll();
    /** Number of live adapters (for diagnostics and tests). */
    static int LiveAdapterCount();
};
