// SPDX-License-Identifier: MIT
#include "tabrecordfactory.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QUrl>

QString TabRecordFactory::HomeUrl()
{
    return QStringLiteral("about:home");
}

QString TabRecordFactory::NewTabPageUrl()
{
    return QStringLiteral("qrc:/browser/pages/newtab.html");
}

QString TabRecordFactory::NotesPluginCode()
{
    return QStringLiteral("notes");
}

void TabRecordFactory::MakeDistinct(const TabDataPtr &tab)
{
    // Records of one type with the same data string are the same tab to the bars
    // (that is how a plug-in stays unique). Web pages and new tabs carry no such
    // string of their own, so each gets its id: two tabs on one address stay two tabs.
    tab->SetData(tab->GetId());
}

TabDataPtr TabRecordFactory::MakeHome()
{
    TabDataPtr tab(new TabData);
    tab->SetTabType(TabData::TabTypeHomePage); // the type first: SetUrl() needs it
    tab->SetUrl(HomeUrl());
    tab->SetTitle(QCoreApplication::translate("TabRecordFactory", "Home"));
    return tab;
}

TabDataPtr TabRecordFactory::MakeNewTab()
{
    TabDataPtr tab(new TabData);
    tab->SetTabType(TabData::TabTypeNewTab);
    tab->SetTitle(TabData::GetNewTabName());
    MakeDistinct(tab);
    return tab;
}

TabDataPtr TabRecordFactory::MakeWeb(const QString &url)
{
    TabDataPtr tab(new TabData);
    tab->SetTabType(TabData::TabTypeWeb);
    tab->SetUrl(url);
    tab->SetTitle(PlaceholderTitle(url));
    MakeDistinct(tab);
    return tab;
}

TabDataPtr TabRecordFactory::MakeNotes()
{
    TabDataPtr tab(new TabData);
    tab->SetTabType(TabData::TabTypePlugin);
    tab->SetData(NotesPluginCode());
    tab->SetTitle(QCoreApplication::translate("TabRecordFactory", "Notes"));
    return tab;
}

bool TabRecordFactory::IsLocalUrl(const QString &url)
{
    const QString scheme = QUrl(url).scheme();
    return scheme == QLatin1String("qrc") || scheme == QLatin1String("file");
}

QString TabRecordFactory::IconForUrl(const QString &url)
{
    const QUrl address(url);
    if (address.scheme() == QLatin1String("qrc")) {
        const QString icon = QStringLiteral(":/browser/icons/page_%1.png").arg(QFileInfo(address.path()).baseName());
        return QFileInfo::exists(icon) ? icon : QStringLiteral(":/browser/icons/page_web.png");
    }
    if (address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https"))
        return address.resolved(QUrl(QStringLiteral("/favicon.ico"))).toString();
    return QStringLiteral(":/browser/icons/page_web.png");
}

QString TabRecordFactory::PlaceholderTitle(const QString &url)
{
    const QUrl address(url);
    if (IsLocalUrl(url))
        return QFileInfo(address.path()).completeBaseName();
    return address.host().isEmpty() ? url : address.host();
}

QString TabRecordFactory::FromUserInput(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return QString();
    const QUrl url = QUrl::fromUserInput(trimmed);
    return url.isValid() ? url.toString() : QString();
}
