// SPDX-License-Identifier: MIT
#pragma once

// Geometry and style helpers of the tab strips that skip all work when nothing changes.
// A bar lays every button out again on each change of the tab list; with hundreds of
// tabs nearly all of those calls ask for what is already there, and Qt's own setters
// still touch size limits, post events or re-polish.

#include "tabworkcounter_p.h"
#include "uiutils.h"

#include <QList>
#include <QPoint>
#include <QSize>
#include <QWidget>

namespace TabGeometry {

// Positions here are logical: x counts from the start of the parent, which is its
// right edge when the parent is laid out right to left. The strips compute their
// layouts, drags and scrolling in these terms once, for both directions; only the
// calls below see the mirror.

/** Whether the children of @p parent are laid out from its right edge. */
inline bool Mirrored(const QWidget *parent)
{
    return parent && parent->isRightToLeft();
}

/** The on-screen x of a span at logical @p x, @p width wide, in a parent @p parentWidth wide. */
inline int VisualX(bool mirrored, int parentWidth, int x, int width)
{
    return mirrored ? parentWidth - x - width : x;
}

/** The logical position of @p widget in its parent. */
inline QPoint Pos(const QWidget *widget)
{
    const QWidget *parent = widget->parentWidget();
    if (!Mirrored(parent))
        return widget->pos();
    return QPoint(VisualX(true, parent->width(), widget->x(), widget->width()), widget->y());
}

inline int X(const QWidget *widget)
{
    return Pos(widget).x();
}

/**
 * Moves @p widget to the logical position @p pos (it must have its final width).
 * Returns whether it moved.
 */
inline bool Move(QWidget *widget, const QPoint &pos)
{
    const QWidget *parent = widget->parentWidget();
    const QPoint visual = Mirrored(parent) ? QPoint(VisualX(true, parent->width(), pos.x(), widget->width()), pos.y())
                                           : pos;
    if (widget->pos() == visual)
        return false;
    widget->move(visual);
    return true;
}

/**
 * Moves @p widget, a child of a parent @p parentWidth wide that is @p mirrored or not,
 * to the logical position @p pos. For a loop over many children of one parent: it
 * asks the parent nothing. Returns whether it moved.
 */
inline bool MoveIn(QWidget *widget, bool mirrored, int parentWidth, const QPoint &pos)
{
    const QPoint visual(VisualX(mirrored, parentWidth, pos.x(), widget->width()), pos.y());
    if (widget->geometry().topLeft() == visual)
        return false;
    widget->move(visual);
    return true;
}

/**
 * Moves the children of @p widget by @p dx on the screen. Right to left, a widget
 * that grows by dx keeps its children's logical places this way.
 */
inline void ShiftChildren(QWidget *widget, int dx)
{
    if (dx == 0)
        return;
    const QList<QWidget *> children = widget->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *child : children) {
        if (!child->isWindow())
            child->move(child->x() + dx, child->y());
    }
}

/**
 * Mirrors every widget below @p widget in its parent, for a change of layout
 * direction: each keeps its logical place, whatever laid it out (a layout, a drag, a
 * bar without tabs that lays nothing out).
 */
inline void MirrorDescendants(QWidget *widget)
{
    const QList<QWidget *> children = widget->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *child : children) {
        if (child->isWindow())
            continue;
        child->move(widget->width() - child->x() - child->width(), child->y());
        MirrorDescendants(child);
    }
}

/** What a change of width does, right to left, to the places of a widget and its children. */
enum class Places {
    Keep, ///< they keep their logical places (their distances from the right edges)
    Leave ///< nothing moves on the screen, for a caller that places them all next
};

/**
 * Fixes @p widget to @p size (negative sizes are taken as 0) unless it already is.
 * Mirrored, a change of width keeps the widget's logical place (its right edge) and
 * the logical places of its children, in one geometry change, unless @p places says
 * to leave them. Returns whether anything changed.
 */
inline bool SetFixedSize(QWidget *widget, QSize size, Places places = Places::Keep)
{
    size = size.expandedTo(QSize(0, 0));
    if (widget->minimumSize() == size && widget->maximumSize() == size && widget->size() == size)
        return false;
    const int delta = size.width() - widget->width();
    const bool mirroredInParent = Mirrored(widget->parentWidget());
    if (delta == 0 || places == Places::Leave || (!mirroredInParent && !widget->isRightToLeft())) {
        widget->setFixedSize(size);
        return true;
    }
    // Before the resize, so that the widget's own resize handling finds its children
    // where their logical places are in the new width.
    if (widget->isRightToLeft())
        ShiftChildren(widget, delta);
    const int x = mirroredInParent ? widget->x() - delta : widget->x();
    widget->setMinimumSize(0, 0);
    widget->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    widget->setGeometry(x, widget->y(), size.width(), size.height());
    widget->setFixedSize(size);
    return true;
}

inline bool SetFixedWidth(QWidget *widget, int width)
{
    return SetFixedSize(widget, QSize(width, widget->height()));
}

/**
 * Re-applies the style sheet after an object name changed. A widget that has not been
 * polished yet picks the new name up at its first polish, so it is left alone.
 */
inline void Repolish(QWidget *widget)
{
    if (widget && widget->testAttribute(Qt::WA_WState_Polished)) {
        TabWorkCounter::Add(TabWorkCounter::Repolish);
        UIUtils::UpdateStyle(widget);
    }
}

/**
 * Tells the style sheet whether @p widget is drawn mirrored: rules for edges that
 * belong to one side (a separator, a shadow, an arrow) have a [mirrored="true"]
 * variant, since style sheets know no layout direction.
 */
inline void SetMirroredStyle(QWidget *widget)
{
    if (!widget)
        return;
    const bool mirrored = widget->isRightToLeft();
    if (widget->property("mirrored").toBool() == mirrored)
        return;
    widget->setProperty("mirrored", mirrored);
    Repolish(widget);
}

} // namespace TabGeometry
