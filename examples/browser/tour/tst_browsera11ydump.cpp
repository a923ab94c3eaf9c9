// SPDX-License-Identifier: MIT
// Runs the demo with --a11y-dump, as a developer checking what a screen reader gets,
// and reads the tree it prints for both bars.

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

class TstBrowserA11yDump : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void treeShowsTheTabsAsAScreenReaderReadsThem_data();
    void treeShowsTheTabsAsAScreenReaderReadsThem();

private:
    static QStringList Dump(const QStringList &arguments, int *exitCode);
};

QStringList TstBrowserA11yDump::Dump(const QStringList &arguments, int *exitCode)
{
    QProcess browser;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    browser.setProcessEnvironment(environment);
    browser.start(QStringLiteral(KELTAB_BROWSER_BINARY), QStringList{QStringLiteral("--a11y-dump")} + arguments);
    if (!browser.waitForFinished(60000)) {
        browser.kill();
        browser.waitForFinished();
        *exitCode = -1;
        return {};
    }
    *exitCode = browser.exitStatus() == QProcess::NormalExit ? browser.exitCode() : -1;
    return QString::fromUtf8(browser.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void TstBrowserA11yDump::treeShowsTheTabsAsAScreenReaderReadsThem_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("window");
    QTest::addColumn<QString>("list");
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<QString>("closeTab");
    QTest::addColumn<QStringList>("controls");
    const QStringList english{"Home", "Welcome", "A host's guide", "Signals a host answers"};
    QTest::addRow("scrolling bar") << QStringList{"--lang", "en"} << "Signals a host answers - KelTab Browser"
                                   << "Tabs" << english << "Close tab %1"
                                   << QStringList{"Scroll tabs left", "Scroll tabs right"};
    QTest::addRow("classic bar") << QStringList{"--lang", "en", "--classic"} << "Signals a host answers - KelTab Browser"
                                 << "Tabs" << english << "Close tab %1" << QStringList{"New tab"};
    // In German every name a screen reader reads out is German: the library's and the demo's.
    const QStringList german{"Start", "Willkommen", "Leitfaden für Hosts", "Signale, auf die ein Host antwortet"};
    QTest::addRow("scrolling bar, German")
        << QStringList{"--lang", "de"} << QStringLiteral("Signale, auf die ein Host antwortet – KelTab-Browser") << "Tabs"
        << german << QStringLiteral("Tab %1 schließen")
        << QStringList{"Tabs nach links scrollen", "Tabs nach rechts scrollen"};
    QTest::addRow("classic bar, German")
        << QStringList{"--lang", "de", "--classic"} << QStringLiteral("Signale, auf die ein Host antwortet – KelTab-Browser")
        << "Tabs" << german << QStringLiteral("Tab %1 schließen") << QStringList{"Neuer Tab"};
    QTest::addRow("scrolling bar, Hebrew")
        << QStringList{"--lang", "he"} << QStringLiteral("אותות שהמארח עונה להם - דפדפן KelTab") << QStringLiteral("כרטיסיות")
        << QStringList{QStringLiteral("בית"), QStringLiteral("ברוכים הבאים"), QStringLiteral("מדריך למארח"),
                       QStringLiteral("אותות שהמארח עונה להם")}
        << QStringLiteral("סגירת הכרטיסייה %1")
        << QStringList{QStringLiteral("גלילת הכרטיסיות שמאלה"), QStringLiteral("גלילת הכרטיסיות ימינה")};
}

void TstBrowserA11yDump::treeShowsTheTabsAsAScreenReaderReadsThem()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, window);
    QFETCH(QString, list);
    QFETCH(QStringList, titles);
    QFETCH(QString, closeTab);
    QFETCH(QStringList, controls);
    int exitCode = 0;
    const QStringList lines = Dump(arguments, &exitCode);
    QCOMPARE(exitCode, 0);
    QVERIFY(!lines.isEmpty());
    QVERIFY2(lines.first().startsWith(QStringLiteral("Window \"%1\"").arg(window)), qPrintable(lines.first()));

    const int listLine = lines.indexOf(QRegularExpression(
        QStringLiteral("^ *PageTabList \"%1\" \\[focusable\\] \\(.*").arg(QRegularExpression::escape(list))));
    QVERIFY2(listLine >= 0, qPrintable(lines.join(QLatin1Char('\n'))));
    const int depth = lines.at(listLine).indexOf(QLatin1String("PageTabList"));
    const QString tabIndent(depth + 2, QLatin1Char(' '));
    const QString buttonIndent(depth + 4, QLatin1Char(' '));

    // The list's children: one page tab per tab in display order, each with its close
    // button below it, the current one selected; then the bar's own buttons.
    QStringList tabs;
    QStringList selected;
    QStringList closeButtons;
    QStringList ownButtons;
    for (int i = listLine + 1; i < lines.size() && lines.at(i).startsWith(tabIndent); ++i) {
        const QString line = lines.at(i);
        const QRegularExpressionMatch name = QRegularExpression(QStringLiteral("^ *\\w+ \"([^\"]*)\"")).match(line);
        QVERIFY2(name.hasMatch(), qPrintable(QStringLiteral("an unnamed node in the bar: ") + line));
        if (line.startsWith(tabIndent + QLatin1String("PageTab "))) {
            tabs << name.captured(1);
            if (line.contains(QLatin1String("[selected")))
                selected << name.captured(1);
            QVERIFY2(line.contains(QLatin1String("actions: Press")), qPrintable(line));
        } else if (line.startsWith(buttonIndent + QLatin1String("Button "))) {
            closeButtons << name.captured(1);
        } else if (line.startsWith(tabIndent + QLatin1String("Button "))) {
            ownButtons << name.captured(1);
        } else {
            QFAIL(qPrintable(QStringLiteral("unexpected node in the bar: ") + line));
        }
    }
    QCOMPARE(tabs, titles);
    QCOMPARE(selected, QStringList{titles.last()});
    QStringList expectedClose;
    for (const QString &title : qAsConst(titles))
        expectedClose << closeTab.arg(title);
    QCOMPARE(closeButtons, expectedClose);
    QCOMPARE(ownButtons, controls);

    // Every button a user can see in the window has a name to be read by.
    for (const QString &line : lines) {
        if (line.trimmed().startsWith(QLatin1String("Button ")) && !line.contains(QLatin1String("invisible")))
            QVERIFY2(line.contains(QLatin1Char('"')), qPrintable(QStringLiteral("an unnamed button: ") + line));
    }
}

QTEST_GUILESS_MAIN(TstBrowserA11yDump)
#include "tst_browsera11ydump.moc"
