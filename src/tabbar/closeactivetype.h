// SPDX-License-Identifier: MIT
#pragma once

/**
 * Which tab the classic bar (BrowserTabBar) makes current when the current tab is
 * removed; the bar asks its virtual GetCloseType(). Any other value behaves like
 * CloseActiveNext; the type is an int underneath so that such values stay defined.
 *
 * It lives in a header of its own because hosts name it in their bar subclasses
 * and in settings code that has no business including the whole bar.
 *
 * @ingroup bars
 */
enum CloseActiveType : int {
    /** The tab to the right; the one to the left when the removed tab was the last. */
    CloseActiveNext = 0,
    /** The tab to the left; none (-1) when the removed tab was the first. */
    CloseActivePrev = 1,
};
