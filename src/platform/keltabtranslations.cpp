// SPDX-License-Identifier: MIT
#include "keltabtranslations.h"

#include <QCoreApplication>
#include <QDir>
#include <QPointer>
#include <QThread>
#include <QTranslator>

namespace {

const char kCatalogueFolder[] = ":/keltabcontainer/translations";
const char kCatalogueName[] = "keltabcontainer";

// One translator for the process, owned by the application so that it goes with it.
QPointer<QTranslator> &Translator()
{
    static QPointer<QTranslator> translator;
    return translator;
}

bool OnGuiThread(const char *what)
{
    QCoreApplication *app = QCoreApplication::instance();
    if (!app) {
        qWarning("KelTabTranslations::%s: no application yet; create the QApplication first", what);
        return false;
    }
    if (QThread::currentThread() != app->thread()) {
        qWarning("KelTabTranslations::%s: called off the GUI thread; ignored", what);
        return false;
    }
    return true;
}

} // namespace

bool KelTabTranslations::Install(const QLocale &locale)
{
    if (!OnGuiThread("Install"))
        return false;
    QPointer<QTranslator> &translator = Translator();
    const bool installed = translator;
    if (!installed)
        translator = new QTranslator(QCoreApplication::instance());
    // Loading into the translator that is already installed keeps its place among
    // the application's translators, behind any the host installed after it.
    const bool loaded = translator->load(locale, QLatin1String(kCatalogueName), QStringLiteral("_"),
                                         QLatin1String(kCatalogueFolder));
    if (!loaded) {
        // An empty catalogue: the texts go back to English.
        QCoreApplication::removeTranslator(translator);
        delete translator;
        return locale.language() == QLocale::English || locale.language() == QLocale::C;
    }
    if (!installed)
        QCoreApplication::installTranslator(translator);
    return true;
}

void KelTabTranslations::Remove()
{
    if (!OnGuiThread("Remove"))
        return;
    QPointer<QTranslator> &translator = Translator();
    if (!translator)
        return;
    QCoreApplication::removeTranslator(translator);
    delete translator;
}

QStringList KelTabTranslations::AvailableLanguages()
{
    QStringList languages;
    const QString prefix = QLatin1String(kCatalogueName) + QLatin1Char('_');
    const QStringList files = QDir(QLatin1String(kCatalogueFolder)).entryList({prefix + QLatin1String("*.qm")}, QDir::Files, QDir::Name);
    for (const QString &file : files)
        languages << file.mid(prefix.size(), file.size() - prefix.size() - 3);
    return languages;
}
