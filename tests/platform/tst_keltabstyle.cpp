// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "keltabstyle.h"

#include <QDir>
#include <QWidget>

namespace {

QStringList QssFiles()
{
    return QDir(QStringLiteral(":/qss")).entryList({QStringLiteral("*.qss")}, QDir::Files, QDir::Name);
}

QString ReadResource(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

} // namespace

class TstKelTabStyle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void defaultSheetConcatenatesQssFilesInNameOrder();
    void defaultSheetIsStable();
    void applyToWidgetKeepsItsOwnSheet_data();
    void applyToWidgetKeepsItsOwnSheet();
    void applyTwiceToWidgetDoesNotDuplicate();
    void applyToApplication();
    void applyTwiceToApplicationDoesNotDuplicate();
    void appliedSheetParses();
};

void TstKelTabStyle::cleanup()
{
    qApp->setStyleSheet(QString());
}

void TstKelTabStyle::defaultSheetConcatenatesQssFilesInNameOrder()
{
    const QString sheet = KelTabStyle::DefaultStyleSheet();
    const QStringList files = QssFiles();
    if (files.isEmpty()) {
        QCOMPARE(sheet, QString());
        return;
    }

    int from = 0;
    for (const QString &name : files) {
        const QString content = ReadResource(QStringLiteral(":/qss/") + name).trimmed();
        if (content.isEmpty())
            continue;
        const int at = sheet.indexOf(content, from);
        QVERIFY2(at >= from, qPrintable(name + QStringLiteral(" is missing or out of order")));
        from = at + content.size();
    }
    // Nothing but the files' text (and the line ends that keep them apart).
    QString joined;
    for (const QString &name : files) {
        joined += ReadResource(QStringLiteral(":/qss/") + name);
        if (!joined.endsWith(QLatin1Char('\n')))
            joined += QLatin1Char('\n');
    }
    QCOMPARE(sheet, joined);
}

void TstKelTabStyle::defaultSheetIsStable()
{
    QCOMPARE(KelTabStyle::DefaultStyleSheet(), KelTabStyle::DefaultStyleSheet());
}

void TstKelTabStyle::applyToWidgetKeepsItsOwnSheet_data()
{
    QTest::addColumn<QString>("own");

    QTest::newRow("none") << QString();
    QTest::newRow("one rule, no line end") << QStringLiteral("QWidget#Host { color: red; }");
    QTest::newRow("one rule, line end") << QStringLiteral("QWidget#Host { color: red; }\n");
}

void TstKelTabStyle::applyToWidgetKeepsItsOwnSheet()
{
    QFETCH(QString, own);

    QWidget widget;
    widget.setStyleSheet(own);
    KelTabStyle::ApplyDefaultStyleSheet(&widget);

    const QString applied = widget.styleSheet();
    QVERIFY(applied.startsWith(own));
    QVERIFY(applied.contains(KelTabStyle::DefaultStyleSheet()));
    // The host's own rules stay on lines of their own.
    if (!own.isEmpty())
        QCOMPARE(applied.at(own.trimmed().size()), QLatin1Char('\n'));
    // Only the target changed.
    QCOMPARE(qApp->styleSheet(), QString());
}

void TstKelTabStyle::applyTwiceToWidgetDoesNotDuplicate()
{
    QWidget widget;
    widget.setStyleSheet(QStringLiteral("QWidget#Host { color: red; }"));
    KelTabStyle::ApplyDefaultStyleSheet(&widget);
    const QString once = widget.styleSheet();
    if (!KelTabStyle::DefaultStyleSheet().isEmpty())
        QVERIFY(once.size() > QStringLiteral("QWidget#Host { color: red; }").size());

    KelTabStyle::ApplyDefaultStyleSheet(&widget);
    QCOMPARE(widget.styleSheet(), once);
    QCOMPARE(widget.styleSheet().count(QStringLiteral("QWidget#Host")), 1);
}

void TstKelTabStyle::applyToApplication()
{
    qApp->setStyleSheet(QStringLiteral("QLabel { color: blue; }"));
    QWidget widget;
    widget.setStyleSheet(QStringLiteral("QWidget#Host { color: red; }"));

    KelTabStyle::ApplyDefaultStyleSheet();
    const QString applied = qApp->styleSheet();
    QVERIFY(applied.startsWith(QStringLiteral("QLabel { color: blue; }\n")));
    QVERIFY(applied.contains(KelTabStyle::DefaultStyleSheet()));
    if (!KelTabStyle::DefaultStyleSheet().isEmpty())
        QVERIFY(applied.size() > QStringLiteral("QLabel { color: blue; }\n").size());
    QCOMPARE(widget.styleSheet(), QStringLiteral("QWidget#Host { color: red; }"));
}

void TstKelTabStyle::applyTwiceToApplicationDoesNotDuplicate()
{
    KelTabStyle::ApplyDefaultStyleSheet(nullptr);
    const QString once = qApp->styleSheet();
    QVERIFY(once.contains(KelTabStyle::DefaultStyleSheet()));
    KelTabStyle::ApplyDefaultStyleSheet(nullptr);
    QCOMPARE(qApp->styleSheet(), once);

    // Applying to a widget as well leaves the application's sheet alone.
    QWidget widget;
    KelTabStyle::ApplyDefaultStyleSheet(&widget);
    QCOMPARE(qApp->styleSheet(), once);
}

void TstKelTabStyle::appliedSheetParses()
{
    // An unparsable sheet makes Qt warn when a widget is polished, which fails this test.
    QWidget widget;
    widget.setObjectName(QStringLiteral("Host"));
    widget.setStyleSheet(QStringLiteral("QWidget#Host { background: rgb(0, 128, 0); }"));
    KelTabStyle::ApplyDefaultStyleSheet(&widget);
    widget.resize(20, 20);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    // The host's own rule still applies after the default sheet was added.
    QCOMPARE(widget.grab().toImage().pixelColor(10, 10), QColor(0, 128, 0));

    KelTabStyle::ApplyDefaultStyleSheet();
    widget.ensurePolished();
    QCOMPARE(widget.grab().toImage().pixelColor(10, 10), QColor(0, 128, 0));
}

KELTAB_TEST_MAIN(TstKelTabStyle)
#include "tst_keltabstyle.moc"
