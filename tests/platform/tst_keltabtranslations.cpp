// SPDX-License-Identifier: MIT
// The library's catalogues: loaded for a locale, complete with respect to the texts
// of the sources, and never in the way of a host's own translation.

#include "bothbars.h"

#include <KelTabContainer/browsertabbarbase.h>
#include <KelTabContainer/dpitool.h>
#include <KelTabContainer/keltabtranslations.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

#include <memory>

using BothBars::Kind;

namespace {

QString Text(const char *context, const char *source)
{
    return QCoreApplication::translate(context, source);
}

// A host's catalogue that has its own word for one of our texts.
class HostTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *disambiguation, int n) const override
    {
        Q_UNUSED(disambiguation)
        Q_UNUSED(n)
        if (qstrcmp(context, "BrowserTabBarEx") == 0 && qstrcmp(source, "Close tab") == 0)
            return QStringLiteral("Shut this tab");
        return QString();
    }
};

struct Message
{
    QString context;
    QString source;
    QString translation;
    bool finished = false;
};

QList<Message> ReadCatalogue(const QString &path, QString *error)
{
    QList<Message> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return messages;
    }
    QXmlStreamReader xml(&file);
    QString context;
    Message message;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("message")) {
            message = Message();
            message.context = context;
        } else if (xml.name() == QLatin1String("source")) {
            message.source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            message.finished = xml.attributes().value(QLatin1String("type")).isEmpty();
            message.translation = xml.readElementText();
            messages << message;
        }
    }
    if (xml.hasError())
        *error = xml.errorString();
    return messages;
}

// A bar whose menu ends with the recovery entry.
template <class Bar>
class RecoveryBar : public Bar
{
protected:
    bool IsShowRecoveryItem() override { return true; }
};

BrowserTabBarBase *MakeWithRecovery(Kind kind)
{
    if (kind == Kind::Classic)
        return new RecoveryBar<BrowserTabBar>;
    return new RecoveryBar<BrowserTabBarEx>;
}

QStringList MenuTexts(BrowserTabBarBase &bar)
{
    QStringList texts;
    auto *menu = bar.findChild<QMenu *>(QStringLiteral("BrowserTabBarMenu"));
    if (!menu)
        return texts;
    for (QAction *action : menu->actions()) {
        if (!action->isSeparator())
            texts << action->text();
    }
    return texts;
}

} // namespace

class TstKelTabTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void shipsThreeLanguages();
    void installLoadsTheLocalesCatalogue_data();
    void installLoadsTheLocalesCatalogue();
    void unknownLanguageKeepsEnglish();
    void englishNeedsNoCatalogue();
    void barsFollowALanguageChange_data();
    void barsFollowALanguageChange();
    void hostTranslatorInstalledLaterWins();
    void switchingLanguageSendsLanguageChange();
    void removeGoesBackToEnglish();
    void cataloguesAreCompleteForTheSources_data();
    void cataloguesAreCompleteForTheSources();
};

void TstKelTabTranslations::initTestCase()
{
    DpiTool::SetScaleFactor(1.0);
}

void TstKelTabTranslations::cleanup()
{
    KelTabTranslations::Remove();
}

void TstKelTabTranslations::shipsThreeLanguages()
{
    QCOMPARE(KelTabTranslations::AvailableLanguages(), (QStringList{"de", "he", "zh_CN"}));
}

void TstKelTabTranslations::installLoadsTheLocalesCatalogue_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("closeTab");
    QTest::addColumn<QString>("closeTabNamed");
    QTest::addColumn<QString>("nextTab");
    QTest::addColumn<QString>("tabs");
    QTest::addRow("de") << "de_DE" << QStringLiteral("Tab schließen") << QStringLiteral("Tab %1 schließen")
                        << QStringLiteral("Nächster Tab") << QStringLiteral("Tabs");
    QTest::addRow("de_AT falls back to de") << "de_AT" << QStringLiteral("Tab schließen")
                                            << QStringLiteral("Tab %1 schließen") << QStringLiteral("Nächster Tab")
                                            << QStringLiteral("Tabs");
    QTest::addRow("zh_CN") << "zh_CN" << QStringLiteral("关闭标签页") << QStringLiteral("关闭标签页“%1”")
                           << QStringLiteral("下一个标签页") << QStringLiteral("标签页");
    QTest::addRow("he") << "he_IL" << QStringLiteral("סגירת כרטיסייה") << QStringLiteral("סגירת הכרטיסייה %1")
                        << QStringLiteral("הכרטיסייה הבאה") << QStringLiteral("כרטיסיות");
}

void TstKelTabTranslations::installLoadsTheLocalesCatalogue()
{
    QFETCH(QString, locale);
    QFETCH(QString, closeTab);
    QFETCH(QString, closeTabNamed);
    QFETCH(QString, nextTab);
    QFETCH(QString, tabs);
    QVERIFY(KelTabTranslations::Install(QLocale(locale)));
    QCOMPARE(Text("BrowserTabBarEx", "Close tab"), closeTab);
    QCOMPARE(Text("BrowserTabBar", "Close tab"), closeTab);
    QCOMPARE(Text("BrowserTabBarBase", "Close tab %1"), closeTabNamed);
    QCOMPARE(Text("KelMouseGesture", "Next tab"), nextTab);
    QCOMPARE(Text("BrowserTabBarBase", "Tabs"), tabs);
    // A bar made now builds its menu in the language.
    BothBars::ForEachBar([&](const char *, Kind kind) {
        std::unique_ptr<BrowserTabBarBase> bar(BothBars::Make(kind));
        bar->InitMenu();
        QVERIFY(MenuTexts(*bar).contains(closeTab));
        QVERIFY(!MenuTexts(*bar).contains(QStringLiteral("Close tab")));
    });
}

void TstKelTabTranslations::unknownLanguageKeepsEnglish()
{
    QVERIFY(!KelTabTranslations::Install(QLocale(QLocale::French, QLocale::France)));
    QCOMPARE(Text("BrowserTabBarEx", "Close tab"), QStringLiteral("Close tab"));
    // Also after another language was on.
    QVERIFY(KelTabTranslations::Install(QLocale(QStringLiteral("de"))));
    QVERIFY(!KelTabTranslations::Install(QLocale(QLocale::French, QLocale::France)));
    QCOMPARE(Text("BrowserTabBarEx", "Close tab"), QStringLiteral("Close tab"));
}

void TstKelTabTranslations::englishNeedsNoCatalogue()
{
    QVERIFY(KelTabTranslations::Install(QLocale(QLocale::English, QLocale::UnitedKingdom)));
    QCOMPARE(Text("BrowserTabBarEx", "Close tab"), QStringLiteral("Close tab"));
    // English after another language takes that language's catalogue away.
    QVERIFY(KelTabTranslations::Install(QLocale(QStringLiteral("de"))));
    QCOMPARE(Text("BrowserTabBarEx", "Close tab"), QStringLiteral("Tab schließen"));
    QVERIFY(KelTabTranslations::Install(QLocale(QLocale::English, QLocale::UnitedStates)));
    QCOMPARE(Text("BrowserTabBarEx", "Close tab"), QStringLiteral("Close tab"));
}

void TstKelTabTranslations::barsFollowALanguageChange_data()
{
    BothBars::AddRowPerBar("language change");
}

// A bar made before the language changed shows the same texts as one made after:
// every menu entry (the recovery entry too) and the tool tips.
void TstKelTabTranslations::barsFollowALanguageChange()
{
    QFETCH(Kind, bar);
    const auto toolTips = [](const BrowserTabBarBase &bar) {
        QStringList tips;
        const QList<QWidget *> widgets = bar.findChildren<QWidget *>();
        for (const QWidget *widget : widgets) {
            if (!widget->toolTip().isEmpty())
                tips << widget->objectName() + QLatin1Char('=') + widget->toolTip();
        }
        tips.sort();
        return tips;
    };
    std::unique_ptr<BrowserTabBarBase> early(MakeWithRecovery(bar));
    early->InitMenu();
    const QStringList english = MenuTexts(*early);
    QVERIFY(english.contains(QStringLiteral("Close tab")));
    QVERIFY(english.contains(QStringLiteral("Recover recently closed tabs")));

    QVERIFY(KelTabTranslations::Install(QLocale(QStringLiteral("de"))));
    std::unique_ptr<BrowserTabBarBase> late(MakeWithRecovery(bar));
    late->InitMenu();
    QVERIFY(MenuTexts(*late).contains(QStringLiteral("Tab schließen")));
    QTRY_COMPARE(MenuTexts(*early), MenuTexts(*late));
    QCOMPARE(toolTips(*early), toolTips(*late));
    if (bar == Kind::Classic)
        QVERIFY(toolTips(*early).contains(QStringLiteral("TabBarNewTabButton=") + Text("BrowserTabBar", "New tab")));

    KelTabTranslations::Remove();
    QTRY_COMPARE(MenuTexts(*early), english);
    QTRY_COMPARE(MenuTexts(*late), english);
}

void TstKelTabTranslations::hostTranslatorInstalledLaterWins()
{
    QVERIFY(KelTabTranslations::Install(QLocale(QStringLiteral("de"))));
    HostTranslator host;
    QVERIFY(QCoreApplication::installTranslator(&host));
    QCOMPARE(Text("BrowserTabBarEx", "Close tab"), QStringLiteral("Shut this tab"));
    // The host's word for this one text; ours for the rest.
    QCOMPARE(Text("BrowserTabBar", "Close tab"), QStringLiteral("Tab schließen"));
    // Switching our language keeps the host's catalogue ahead of ours.
    QVERIFY(KelTabTranslations::Install(QLocale(QStringLiteral("zh_CN"))));
    QCOMPARE(Text("BrowserTabBarEx", "Close tab"), QStringLiteral("Shut this tab"));
    QCOMPARE(Text("BrowserTabBar", "Close tab"), QStringLiteral("关闭标签页"));
    QCoreApplication::removeTranslator(&host);
}

void TstKelTabTranslations::switchingLanguageSendsLanguageChange()
{
    class Watcher : public QObject
    {
    public:
        int changes = 0;
        bool eventFilter(QObject *object, QEvent *event) override
        {
            if (object == QCoreApplication::instance() && event->type() == QEvent::LanguageChange)
                ++changes;
            return false;
        }
    } watcher;
    qApp->installEventFilter(&watcher);
    QVERIFY(KelTabTranslations::Install(QLocale(QStringLiteral("de"))));
    QTRY_VERIFY(watcher.changes > 0);
    watcher.changes = 0;
    QVERIFY(KelTabTranslations::Install(QLocale(QStringLiteral("he"))));
    QTRY_VERIFY(watcher.changes > 0);
    qApp->removeEventFilter(&watcher);
}

void TstKelTabTranslations::removeGoesBackToEnglish()
{
    QVERIFY(KelTabTranslations::Install(QLocale(QStringLiteral("de"))));
    KelTabTranslations::Remove();
    QCOMPARE(Text("BrowserTabBarEx", "Close tab"), QStringLiteral("Close tab"));
    KelTabTranslations::Remove(); // twice: nothing left to remove
    QCOMPARE(Text("BrowserTabBarEx", "Close tab"), QStringLiteral("Close tab"));
}

void TstKelTabTranslations::cataloguesAreCompleteForTheSources_data()
{
    QTest::addColumn<QString>("language");
    for (const char *language : {"de", "he", "zh_CN"})
        QTest::addRow("%s", language) << QString::fromLatin1(language);
}

// Every text the sources pass through tr() today is in each catalogue, translated,
// with its place markers kept.
void TstKelTabTranslations::cataloguesAreCompleteForTheSources()
{
    QFETCH(QString, language);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString extracted = dir.filePath(QStringLiteral("sources.ts"));
    QProcess lupdate;
    lupdate.setProcessChannelMode(QProcess::MergedChannels);
    lupdate.start(QStringLiteral(KELTAB_LUPDATE),
                  {QStringLiteral("-locations"), QStringLiteral("none"), QStringLiteral(KELTAB_SOURCE_DIR) + QStringLiteral("/src"),
                   QStringLiteral("-ts"), extracted});
    QVERIFY(lupdate.waitForFinished(120000));
    QVERIFY2(lupdate.exitCode() == 0, lupdate.readAll().constData());

    QString error;
    const QList<Message> sources = ReadCatalogue(extracted, &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QVERIFY(sources.size() >= 30);
    const QList<Message> catalogue = ReadCatalogue(
        QStringLiteral(KELTAB_SOURCE_DIR) + QStringLiteral("/translations/keltabcontainer_%1.ts").arg(language), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));

    QSet<QString> wanted;
    for (const Message &m : sources)
        wanted << m.context + QLatin1Char('|') + m.source;
    QSet<QString> present;
    static const QRegularExpression marker(QStringLiteral("%\\d"));
    for (const Message &m : catalogue) {
        const QString key = m.context + QLatin1Char('|') + m.source;
        present << key;
        QVERIFY2(m.finished && !m.translation.isEmpty(), qPrintable(QStringLiteral("untranslated: ") + key));
        QStringList sourceMarkers;
        QStringList translationMarkers;
        for (auto it = marker.globalMatch(m.source); it.hasNext();)
            sourceMarkers << it.next().captured();
        for (auto it = marker.globalMatch(m.translation); it.hasNext();)
            translationMarkers << it.next().captured();
        sourceMarkers.sort();
        translationMarkers.sort();
        QCOMPARE(translationMarkers, sourceMarkers);
    }
    const QSet<QString> missing = wanted - present;
    QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("missing: ") + QStringList(missing.values()).join(QLatin1String(", "))));
    const QSet<QString> stale = present - wanted;
    QVERIFY2(stale.isEmpty(), qPrintable(QStringLiteral("no longer in the sources: ") + QStringList(stale.values()).join(QLatin1String(", "))));
}

QTEST_MAIN(TstKelTabTranslations)
#include "tst_keltabtranslations.moc"
