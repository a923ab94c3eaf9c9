// SPDX-License-Identifier: MIT
#include <KelTabContainer/KelTabContainer.h>

#include <QApplication>
#include <QMetaType>
#include <cstdio>

namespace {

bool IsRegistered(const char *typeName)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QMetaType::fromName(typeName).isValid();
#else
    return QMetaType::type(typeName) != QMetaType::UnknownType;
#endif
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // The package must bring the Qt this host was compiled against, not the other one.
    if (QString::fromLatin1(qVersion()).section(QLatin1Char('.'), 0, 0).toInt() != QT_VERSION_MAJOR)
        return 4;
    TabDataPtr tab(new TabData);
    tab->SetTabType(TabData::TabTypeWeb);
    tab->SetUrl(QStringLiteral("https://example.org/"));
    if (tab->GetUrl() != QLatin1String("https://example.org/"))
        return 1;
    if (!IsRegistered("TabDataPtr"))
        return 2;
    if (BrowserMainNotify::Instance() != BrowserMainNotify::Instance())
        return 3;
    BrowserMainNotify::ReleaseInstance();
    std::printf("consumer ok with Qt %s: %s\n", qVersion(), qPrintable(tab->GetId()));
    return 0;
}
