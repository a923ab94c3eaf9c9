// SPDX-License-Identifier: MIT
#pragma once

// Counters of the costly work the strips do: re-polishing widgets by the style sheet,
// rendering tab backgrounds, changing the geometry of tab buttons, and looking at tabs
// at all (what makes an operation cost as much as the strip is long). They cost one
// increment each and let tests check that an operation does a fixed amount of such
// work however many tabs the strip holds, which timing cannot check reliably. GUI
// thread only. Not part of the installed API.

#include "keltabcontainer_export.h"

#include <QtGlobal>

namespace TabWorkCounter {

enum Kind {
    Repolish,         // a widget re-polished by a tab button after a change of look
    BackgroundRender, // a tab background stretched from its image
    ButtonGeometry,   // a tab button moved or resized
    TabVisit,         // a tab looked at by a layout, a separator or a form pass
    KindCount
};

/** Counts one piece of work of @p kind. */
KELTABCONTAINER_EXPORT void Add(Kind kind);
/** Counts a tab button's change of geometry when @p changed (what a skip-if-unchanged setter returns). */
inline void CountGeometry(bool changed)
{
    if (changed)
        Add(ButtonGeometry);
}
/** The work of @p kind counted since the program started. */
KELTABCONTAINER_EXPORT quint64 Count(Kind kind);

} // namespace TabWorkCounter
