// SPDX-License-Identifier: MIT
// Creates a few tab records the way a host does and prints them.

#include <KelTabContainer/KelTabContainer.h>

#include <QCoreApplication>
#include <QTextStream>

namespace {

const char *TypeName(TabData::TabType type)
{
    switch (type) {
    case TabData::TabTypeNone: return "none";
    case TabData::TabTypeNewTab: return "new tab";
    case TabData::TabTypeHomePage: return "home page";
    case TabData::TabTypeOther: return "other";
    case TabData::TabTypeWeb: return "web";
    case TabData::TabTypeWebPopup: return "web popup";
    case TabData::TabTypePlugin: return "plug-in";
    }
    return "?";
}

TabDataPtr MakeTab(TabData::TabType type, const QString &title, const QString &urlOrCode)
{
    TabDataPtr tab(new TabData);
    tab->SetTabType(type);   // the type first: SetUrl() only takes effect for URL-carrying types
    tab->SetTitle(title);
    if (type == TabData::TabTypePlugin)
        tab->SetData(urlOrCode);
    else
        tab->SetUrl(urlOrCode);
    return tab;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);

    const QList<TabDataPtr> tabs = {
        MakeTab(TabData::TabTypeHomePage, QStringLiteral("Home"), QStringLiteral("kel://home")),
        MakeTab(TabData::TabTypeWeb, QStringLiteral("Qt documentation"), QStringLiteral("https://doc.qt.io/")),
        MakeTab(TabData::TabTypeWebPopup, QStringLiteral("Sign in"), QStringLiteral("https://example.org/login")),
        MakeTab(TabData::TabTypePlugin, QStringLiteral("Notes"), QStringLiteral("notes")),
        MakeTab(TabData::TabTypeNewTab, TabData::GetNewTabName(), QString()),
    };

    out << "KelTabContainer: " << tabs.size() << " tab records\n";
    for (const TabDataPtr &tab : tabs) {
        out << "  " << tab->GetId() << "  " << TypeName(tab->GetTabType()) << "  \"" << tab->GetTitle() << "\"";
        if (!tab->GetUrl().isEmpty())
            out << "  url=" << tab->GetUrl();
        if (!tab->GetPluginCode().isEmpty())
            out << "  plugin=" << tab->GetPluginCode();
        out << '\n';
    }

    // Records are found by equality of id, or of type and data: a second record for
    // the same plug-in is the same tab.
    TabData samePlugin;
    samePlugin.SetTabType(TabData::TabTypePlugin);
    samePlugin.SetData(QStringLiteral("notes"));
    out << "A second \"notes\" plug-in record equals the first: "
        << (tabs.at(3)->IsEqual(samePlugin) ? "yes" : "no") << '\n';
    return 0;
}
