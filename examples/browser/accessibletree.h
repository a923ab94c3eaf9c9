// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QObject;

// The accessible tree below an object as a screen reader would read it, one node per
// line: role, name in quotes, the states that matter for a tab strip and the
// rectangle on the screen. Children are indented by two spaces.
QString AccessibleTreeText(QObject *root);
