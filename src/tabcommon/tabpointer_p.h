// SPDX-License-Identifier: MIT
#pragma once

// What lies under the pointer, for both tab strips. Not part of the installed API.
//
// A strip moves its tabs under a pointer that does not move: the tabs right of a
// closed one slide left, the strip scrolls, a dragged tab drops into its slot. The
// window system reports crossings only when the pointer itself moves, and Qt keeps
// its record of the widget under the pointer only from those reports; when that
// widget is deleted (the close button just clicked), the record is lost, and the
// next quick exit from the strip reaches the window alone, never the strip. These
// helpers keep both the record and the tabs' hover state true to the pointer.

#include <QPoint>

class QWidget;

namespace TabPointer {

/**
 * The pointer's global position, when the platform can tell it.
 * @return false when it cannot: no screen, or a Wayland session, where a client
 * learns the pointer's position only from the events that reach its own surfaces.
 */
bool GlobalPos(QPoint *pos);

/**
 * True when the pointer lies over @p widget's rectangle (not only over a window above
 * it). Where the position cannot be told, whether the window system last reported the
 * pointer over the widget (its Enter and Leave).
 */
bool IsOver(const QWidget *widget);

/**
 * Brings Qt's record of the widget under the pointer, and the enter/leave state of
 * @p strip's own widgets, up to date with where the pointer is now, after the strip
 * moved widgets beneath it or a popup that held the mouse has closed. Widgets of the
 * strip that counted as hovered but no longer lie under the pointer get their Leave,
 * those that now lie under it their Enter, as if the pointer had just moved there.
 * Returns false when it must be tried again later: while a popup holds the mouse
 * (nothing is done then) or a button is down (then only widgets the pointer surely
 * left get their Leave). Otherwise returns true.
 */
bool Resync(QWidget *strip);

} // namespace TabPointer
