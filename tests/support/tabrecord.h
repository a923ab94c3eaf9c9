// SPDX-License-Identifier: MIT
#pragma once

// The tab records the tests put on a bar.

#include "tabdata.h"

#include <QString>

namespace KelTest {

/**
 * A tab record of @p type titled @p title. Records compare equal when their type and
 * data are, so every test tab gets data of its own: @p data, or else its own id.
 */
inline TabDataPtr MakeTab(TabData::TabType type, const QString &title, const QString &data = QString())
{
    TabDataPtr tab(new TabData);
    tab->SetTabType(type);
    tab->SetTitle(title);
    tab->SetData(data.isEmpty() ? tab->GetId() : data);
    return tab;
}

/** A web tab titled @p title. */
inline TabDataPtr WebTab(const QString &title)
{
    return MakeTab(TabData::TabTypeWeb, title);
}

} // namespace KelTest
