// SPDX-License-Identifier: MIT
#pragma once

#include <KelTabContainer/tabdata.h>

#include <QVector>

/**
 * The window's memory of closed tabs, most recent last: what "Recover recently
 * closed tabs", Ctrl+Shift+T and the recover gesture reopen.
 *
 * Records are kept as values, so a closed tab's record outlives its button and page.
 */
class ClosedTabStack
{
public:
    /** How many closed tabs are remembered; older ones are forgotten. */
    static constexpr int Capacity = 25;

    void Push(const TabData &tab);
    /** Takes the most recently closed tab; a fresh record when the stack is empty. */
    TabData Pop();
    bool IsEmpty() const;
    int Count() const;

private:
    QVector<TabData> m_tabs;
};
