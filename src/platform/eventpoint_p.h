// SPDX-License-Identifier: MIT
#pragma once

// Internal to the library (and its tests): where a mouse event happened, asked the
// same way with Qt 5 and Qt 6. Qt 6 reports positions as QPointF (position(),
// globalPosition()) and deprecates the integer pos()/globalPos() of Qt 5, which has
// no position(); both round to the nearest pixel the same way.

#include <QMouseEvent>

/** @return the position of @p event in the receiving widget, in whole pixels. */
inline QPoint KelEventPos(const QMouseEvent *event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

/** @return the position of @p event on the screen, in whole pixels. */
inline QPoint KelEventGlobalPos(const QMouseEvent *event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->globalPosition().toPoint();
#else
    return event->globalPos();
#endif
}
