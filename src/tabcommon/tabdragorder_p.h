// SPDX-License-Identifier: MIT
#pragma once

// The rule by which a dragged tab takes a new place in the list, shared by both bars.
//
// Moving left, the dragged tab takes neighbour j's place once its left edge lies in
// the first third of j (boundary included); moving right, once its right edge has
// covered two thirds of j. A drag to the very start moves the tab to firstIndex, a
// drag to the very end to the last index. Inside the strip a target of 0 is refused,
// even when firstIndex is 0: only the drag-to-start rule may place a tab at index 0.

#include <QtGlobal>

namespace TabDragOrder {

/**
 * @param count        number of tabs
 * @param dragged      list index p of the dragged tab
 * @param firstIndex   lowest index a dragged tab may take
 * @param left, right  the dragged tab's edges, in the coordinates of the strip
 * @param stripWidth   width of the strip the tabs lie in
 * @param span         span(j) gives tab j's (x, width) as a QPair or std::pair
 * @return the index the dragged tab moves to, or -1 for no change
 */
template <typename Span>
int Target(int count, int dragged, int firstIndex, int left, int right, int stripWidth, Span span)
{
    if (dragged < 0 || dragged >= count)
        return -1;
    if (left <= 0)
        return firstIndex >= dragged ? -1 : firstIndex;
    // A tab may lie below firstIndex (a scrolling tab left of the first movable index);
    // dragged, it may only land at firstIndex or beyond, and neighbours below
    // firstIndex are never compared with it.
    const int first = qMax(firstIndex, 0);
    if (right >= stripWidth)
        return dragged == count - 1 || count - 1 < first ? -1 : count - 1;

    for (int j = qMax(firstIndex, 0); j < dragged; ++j) {
        const auto s = span(j);
        const int x = s.first;
        const int w = s.second;
        if (x <= left && left <= x + w) {
            int target = j;
            if (left > x + w / 3)
                ++target;
            target = qMin(target, count - 1);
            return (target == dragged || target == 0) ? -1 : target;
        }
    }
    for (int j = qMax(dragged + 1, first); j < count; ++j) {
        const auto s = span(j);
        const int x = s.first;
        const int w = s.second;
        if (x <= right && right <= x + w) {
            int target = j;
            if (right < x + (2 * w) / 3)
                --target;
            target = qMax(target, 0);
            return (target == dragged || target == 0 || target < first) ? -1 : target;
        }
    }
    return -1;
}

} // namespace TabDragOrder
