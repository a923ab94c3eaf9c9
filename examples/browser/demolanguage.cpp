// SPDX-License-Identifier: MIT
#include "demolanguage.h"

#include <KelTabContainer/keltabtranslations.h>

#include <QApplication>

DemoLanguage::~DemoLanguage()
{
    Unload();
}

bool DemoLanguage::Load(const QLocale &locale)
{
    Unload();
    const bool library = KelTabTranslations::Install(locale);
    const bool demo = m_demo.load(locale, QStringLiteral("browser"), QStringLiteral("_"),
                                  QStringLiteral(":/browser/translations"));
    if (demo)
        QCoreApplication::installTranslator(&m_demo);
    m_loaded = true;
    QLocale::setDefault(locale);
    QApplication::setLayoutDirection(locale.textDirection());
    return library || demo;
}

void DemoLanguage::Unload()
{
    if (!m_loaded)
        return;
    m_loaded = false;
    QCoreApplication::removeTranslator(&m_demo);
    KelTabTranslations::Remove();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QApplication::setLayoutDirection(Qt::LeftToRight);
}
