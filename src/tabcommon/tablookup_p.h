// SPDX-License-Identifier: MIT
#pragma once

// Lookups shared by both tab bars. Each bar keeps a list of its own button type;
// every button offers TabDataPtr GetTabData() const. All lookups walk the list in
// tab order and return the first match, -1 when none.

#include "tabdata.h"

#include <QList>
#include <QStringList>

namespace TabLookup {

template <typename Button>
TabDataPtr TabAt(const QList<Button *> &buttons, int index)
{
    if (index < 0 || index >= buttons.size())
        return TabDataPtr();
    return buttons.at(index)->GetTabData();
}

template <typename Button, typename Predicate>
int FirstIndex(const QList<Button *> &buttons, Predicate matches)
{
    for (int i = 0; i < buttons.size(); ++i) {
        const TabDataPtr tab = buttons.at(i)->GetTabData();
        if (tab && matches(*tab))
            return i;
    }
    return -1;
}

/** Record equality (same id, or same type and data); -1 for a null pointer. */
template <typename Button>
int IndexOfTab(const QList<Button *> &buttons, const TabDataPtr &tab)
{
    if (!tab)
        return -1;
    return FirstIndex(buttons, [&tab](const TabData &candidate) { return tab->IsEqual(candidate); });
}

/** Exact, case-sensitive title match. */
template <typename Button>
int IndexOfTitle(const QList<Button *> &buttons, const QString &title)
{
    return FirstIndex(buttons, [&title](const TabData &candidate) { return candidate.GetTitle() == title; });
}

/** Exact, case-sensitive id match. */
template <typename Button>
int IndexOfId(const QList<Button *> &buttons, const QString &id)
{
    return FirstIndex(buttons, [&id](const TabData &candidate) { return candidate.IsEqual(id); });
}

template <typename Button>
QStringList AllTitles(const QList<Button *> &buttons)
{
    QStringList titles;
    titles.reserve(buttons.size());
    for (Button *button : buttons) {
        const TabDataPtr tab = button->GetTabData();
        titles.append(tab ? tab->GetTitle() : QString());
    }
    return titles;
}

} // namespace TabLookup
