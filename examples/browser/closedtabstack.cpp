// SPDX-License-Identifier: MIT
#include "closedtabstack.h"

void ClosedTabStack::Push(const TabData &tab)
{
    if (m_tabs.size() >= Capacity)
        m_tabs.removeFirst();
    m_tabs.append(tab);
}

TabData ClosedTabStack::Pop()
{
    if (m_tabs.isEmpty())
        return TabData();
    return m_tabs.takeLast();
}

bool ClosedTabStack::IsEmpty() const
{
    return m_tabs.isEmpty();
}

int ClosedTabStack::Count() const
{
    return m_tabs.size();
}
