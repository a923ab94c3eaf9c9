// SPDX-License-Identifier: MIT
#pragma once

// For tests that run a context menu as a user does: find the menu that popped up and
// the command in it by the text a user reads.

#include <QAction>
#include <QApplication>
#include <QMenu>

namespace KelTest {

/** The menu that is open now (the active popup, shown), or null. */
inline QMenu *ShownMenu()
{
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    return menu && menu->isVisible() ? menu : nullptr;
}

/** The entry of @p menu that reads @p text, or null. */
inline QAction *ActionNamed(QMenu *menu, const QString &text)
{
    const QList<QAction *> actions = menu->actions();
    for (QAction *action : actions) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

} // namespace KelTest
