// SPDX-License-Identifier: MIT
#pragma once

// Geometry and style helpers of the tab strips that skip all work when nothing changes.
// A bar lays every button out again on each change of the tab list; with hundreds of
// tabs nearly all of those calls ask for what is already there, and Qt's own setters
// still touch size limits, post events or re-polish.

#include "uiutils.h"

#include <QPoint>
#include <QSize>
#include <QWidget>

namespace TabGeometry {

/** Fixes @p widget to @p size (negative sizes are taken as 0) unless it already is. */
inline void SetFixedSize(QWidget *widget, QSize size)
{
    size = size.expandedTo(QSize(0, 0));
    if (widget->minimumSize() == size && widget->maximumSize() == size && widget->size() == size)
        return;
    widget->setFixedSize(size);
}

inline void SetFixedWidth(QWidget *widget, int width)
{
    SetFixedSize(widget, QSize(width, widget->height()));
}

inline void Move(QWidget *widget, const QPoint &pos)
{
    if (widget->pos() != pos)
        widget->move(pos);
}

/**
 * Re-applies the style sheet after an object name changed. A widget that has not been
 * polished yet picks the new name up at its first polish, so it is left alone.
 */
inline void Repolish(QWidget *widget)
{
    if (widget && widget->testAttribute(Qt::WA_WState_Polished))
        UIUtils::UpdateStyle(widget);
}

} // namespace TabGeometry
