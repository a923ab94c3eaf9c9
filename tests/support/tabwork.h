// SPDX-License-Identifier: MIT
#pragma once

// The strips' work counters read as one record, for tests that check that an operation
// does as much work on a long strip as on a short one: counted, not timed, so that a
// loaded machine cannot make them flake.

#include "tabworkcounter_p.h"

#include <QtGlobal>

namespace TabWork {

struct Work
{
    quint64 repolishes = 0; // widgets re-polished by the style sheet
    quint64 renders = 0;    // tab backgrounds stretched from their image
    quint64 moves = 0;      // tab buttons moved or resized
    quint64 visits = 0;     // tabs looked at by a layout, a separator or a form pass
};

/** The work counted since the program started. */
inline Work Now()
{
    using namespace TabWorkCounter;
    return {Count(Repolish), Count(BackgroundRender), Count(ButtonGeometry), Count(TabVisit)};
}

/** The work counted since @p before was read. */
inline Work Since(const Work &before)
{
    const Work now = Now();
    return {now.repolishes - before.repolishes, now.renders - before.renders, now.moves - before.moves,
            now.visits - before.visits};
}

} // namespace TabWork
