// SPDX-License-Identifier: MIT
#pragma once

// Counters of the costly work the strips do: re-polishing widgets by the style sheet,
// rendering tab backgrounds, changing the geometry of tab buttons. They cost one
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
    KindCount
};

/** Counts one piece of work of @p kind. */
KELTABCONTAINER_EXPORT void Add(Kind kind);
/** The work of @p kind counted since the program started. */
KELTABCONTAINER_EXPORT quint64 Count(Kind kind);

} // namespace TabWorkCounter
