// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QString>

class QWidget;

/**
 * The library's default look.
 *
 * Every widget of the library is styled by object name (see each widget's
 * documentation). The default style sheet is the concatenation, in file-name order,
 * of every ".qss" file under the resource folder ":/qss/". A host applies it with
 * ApplyDefaultStyleSheet(), or takes DefaultStyleSheet(), edits it and applies its
 * own; the library never applies a style sheet by itself.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT KelTabStyle
{
public:
    /** Not constructible: every operation is static. */
    KelTabStyle() = delete;

    /** The default style sheet text. */
    static QString DefaultStyleSheet();
    /**
     * Appends the default style sheet to @p target's style sheet, or to the
     * application's when @p target is null. Applying it twice does not add it twice.
     */
    static void ApplyDefaultStyleSheet(QWidget *target = nullptr);
};
