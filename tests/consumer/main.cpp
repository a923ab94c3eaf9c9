#include <KelTabContainer/KelTabContainer.h>

#include <QApplication>
#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    TabDataPtr tab(new TabData);
    tab->SetTabType(TabData::TabTypeWeb);
    tab->SetUrl(QStringLiteral("https://example.org/"));
    if (tab->GetUrl() != QLatin1String("https://example.org/"))
        return 1;
    if (QMetaType::type("TabDataPtr") == QMetaType::UnknownType)
        return 2;
    if (BrowserMainNotify::Instance() != BrowserMainNotify::Instance())
        return 3;
    BrowserMainNotify::ReleaseInstance();
    std::printf("consumer ok: %s\n", qPrintable(tab->GetId()));
    return 0;
}
