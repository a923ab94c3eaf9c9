// SPDX-License-Identifier: MIT
#pragma once

// Whether a child of a tab button has to be re-polished when the button changes its
// object name. Re-polishing runs the whole style sheet against the widget again, which
// is the dearest part of a change of the current or hovered tab; a child whose rules
// cannot tell the button's names apart would come out of it exactly as it went in.
// Not part of the installed API.

class QWidget;

namespace TabRestyle {

/**
 * True when the look of @p widget may change with the object name or a property of
 * one of its ancestors, or with a property of its own: some style sheet rule that can
 * select it names an ancestor by id, attribute or state, or tests one of its
 * properties. Also true whenever that cannot be told: a widget with a style of its
 * own, or one not styled by a style sheet at all (its style may look at anything).
 */
bool LookFollowsAncestors(const QWidget *widget);

} // namespace TabRestyle
