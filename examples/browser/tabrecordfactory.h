// SPDX-License-Identifier: MIT
#pragma once

#include <KelTabContainer/tabdata.h>

#include <QString>

/**
 * Makes the tab records of the demo's pages and knows what the local pages look like
 * before they have loaded (title and icon).
 */
class TabRecordFactory
{
public:
    TabRecordFactory() = delete;

    /** The address of the home tab, shown in the address bar. */
    static QString HomeUrl();
    /** The local page a new tab shows. */
    static QString NewTabPageUrl();
    /** The code of the demo's only plug-in. */
    static QString NotesPluginCode();

    static TabDataPtr MakeHome();
    static TabDataPtr MakeNewTab();
    static TabDataPtr MakeWeb(const QString &url);
    static TabDataPtr MakeNotes();

    /** True for the addresses the demo renders from its own resources or local files. */
    static bool IsLocalUrl(const QString &url);
    /** The icon of a page: its own for the demo's local pages, the site's favicon otherwise. */
    static QString IconForUrl(const QString &url);
    /** What to call a page before it has told its title. */
    static QString PlaceholderTitle(const QString &url);
    /** Turns what the user typed into an address: adds https:// to bare host names. */
    static QString FromUserInput(const QString &text);

private:
    static void MakeDistinct(const TabDataPtr &tab);
};
