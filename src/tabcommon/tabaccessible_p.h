// SPDX-License-Identifier: MIT
#pragma once

// What a screen reader sees of a tab strip, through Qt's accessibility tree. Not part of
// the installed API: the interfaces are made by a factory that the first bar installs,
// so a host does nothing to have them.
//
// A bar is a page-tab list whose direct children are its tabs in display order (the
// viewport and content frames that hold the scrolling bar's tabs stay out of the tree),
// followed by its own buttons (scroll arrows, new tab). A tab's only child is its close
// button.

#include <QAccessibleWidget>

class BrowserTabBarBase;
class BrowserTabButtonBase;

namespace TabAccessible {

/** Installs the factory once; later calls do nothing. */
void InstallFactory();

/** The tab's accessible name: its full title, or "New tab" when it has none. */
QString TabName(const BrowserTabButtonBase *button);

/** The bar that shows @p widget, null when none does. */
BrowserTabBarBase *BarOf(const QWidget *widget);
/** The tab button that holds @p widget, null when none does. */
BrowserTabButtonBase *TabOf(const QWidget *widget);

} // namespace TabAccessible
