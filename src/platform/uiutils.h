// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

class QWidget;

/** Small helpers for widgets whose look is driven by style sheets.
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT UIUtils
{
public:
    /** Not constructible: every operation is static. */
    UIUtils() = delete;

    /**
     * Re-applies the style sheet to @p widget after its object name or a dynamic
     * property changed (unpolish, polish, update). Does nothing for a null pointer.
     */
    static void UpdateStyle(QWidget *widget);
};
