// SPDX-License-Identifier: MIT
// Runs the demo browser's scripted tour (browser --tour) in a temporary folder and
// checks what it wrote: the tab bar's signals step by step against
// tour_signals.txt, and every screenshot.

#include "keltabtest.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

// The tour's window size, which every screenshot has.
const QSize kWindowSize(1280, 800);
// A blank or broken picture has a handful of colours; a window with text, icons and
// anti-aliased edges has hundreds.
constexpr int kMinimumColours = 32;
constexpr int kMinimumScreenshots = 10;
constexpr int kTourTimeoutMs = 540000;

struct Step
{
    QString heading;
    QVector<QStringList> alternatives; // accepted signal sequences
};

QStringList ReadLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QStringList();
    QTextStream in(&file);
    // Qt 6 reads UTF-8 unless told otherwise and has no setCodec().
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    in.setCodec("UTF-8");
#endif
    QStringList lines;
    while (!in.atEnd())
        lines.append(in.readLine());
    return lines;
}

// Both files share the form "== heading" then one signal per line; the expected
// file adds "#" comments, empty lines and "||" between accepted sequences.
QVector<Step> ParseSteps(const QStringList &lines)
{
    QVector<Step> steps;
    for (const QString &raw : lines) {
        const QString line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1String("== "))) {
            steps.append(Step{line.mid(3), {QStringList()}});
        } else if (steps.isEmpty()) {
            steps.append(Step{QString(), {QStringList(line)}}); // a signal before any heading
        } else if (line.startsWith(QLatin1String("||"))) {
            steps.last().alternatives.append(QStringList());
        } else {
            steps.last().alternatives.last().append(line);
        }
    }
    return steps;
}

QString Describe(const QStringList &signalLines)
{
    return signalLines.isEmpty() ? QStringLiteral("(no signal)") : signalLines.join(QLatin1String(", "));
}

} // namespace

class TstBrowserTour : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_temp.isValid());
        m_out = m_temp.filePath(QStringLiteral("tour"));

        QProcess tour;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("qt.qpa.*=false"));
        tour.setProcessEnvironment(environment);
        tour.setProcessChannelMode(QProcess::MergedChannels);
        tour.start(QStringLiteral(KELTAB_BROWSER_BINARY),
                   {QStringLiteral("--tour"), QStringLiteral("--out"), m_out});
        QVERIFY2(tour.waitForStarted(), qPrintable(tour.errorString()));
        QVERIFY2(tour.waitForFinished(kTourTimeoutMs), "the tour did not finish in time");

        // Shown in the test's output, where a sanitizer report fails the test.
        m_output = QString::fromLocal8Bit(tour.readAll());
        const auto lines = m_output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString &line : lines)
            qInfo("browser: %s", qUtf8Printable(line));
        QCOMPARE(tour.exitStatus(), QProcess::NormalExit);
        QCOMPARE(tour.exitCode(), 0);
    }

    void printsTheFolder()
    {
        QVERIFY2(m_output.contains(QStringLiteral("Tour written to ") + QDir(m_out).absolutePath()),
                 qPrintable(m_output));
    }

    void noWarnings()
    {
        QVERIFY(QFile::exists(QDir(m_out).filePath(QStringLiteral("warnings.log"))));
        const QStringList warnings = ReadLines(QDir(m_out).filePath(QStringLiteral("warnings.log")));
        QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join(QLatin1Char('\n'))));
    }

    void signalsFollowTheScript()
    {
        const QVector<Step> expected = ParseSteps(ReadLines(QStringLiteral(KELTAB_TOUR_EXPECTED)));
        const QVector<Step> actual = ParseSteps(ReadLines(QDir(m_out).filePath(QStringLiteral("signals.log"))));
        QVERIFY(!expected.isEmpty());

        QStringList expectedHeadings;
        QStringList actualHeadings;
        for (const Step &step : expected)
            expectedHeadings.append(step.heading);
        for (const Step &step : actual)
            actualHeadings.append(step.heading);
        QCOMPARE(actualHeadings, expectedHeadings);

        for (int i = 0; i < expected.size(); ++i) {
            const QStringList got = actual.at(i).alternatives.first();
            if (expected.at(i).alternatives.contains(got))
                continue;
            QStringList accepted;
            for (const QStringList &alternative : expected.at(i).alternatives)
                accepted.append(QStringLiteral("  ") + Describe(alternative));
            QFAIL(qPrintable(QStringLiteral("step \"%1\": the bar emitted\n  %2\nbut the script accepts\n%3")
                                 .arg(expected.at(i).heading, Describe(got), accepted.join(QLatin1Char('\n')))));
        }
    }

    // What the signals cannot show: the tab really moved, the menu really opened and
    // its command reached the clipboard.
    void tourSawTheBarAnswer()
    {
        const QString log = ReadLines(QDir(m_out).filePath(QStringLiteral("tour.log"))).join(QLatin1Char('\n'));
        // Once on each bar.
        QRegularExpressionMatchIterator drags =
            QRegularExpression(QStringLiteral("the tab went from (\\d+) to (\\d+)")).globalMatch(log);
        int dragCount = 0;
        while (drags.hasNext()) {
            const QRegularExpressionMatch drag = drags.next();
            QVERIFY2(drag.captured(1).toInt() > drag.captured(2).toInt(), qPrintable(drag.captured(0)));
            ++dragCount;
        }
        QCOMPARE(dragCount, 2);
        QVERIFY2(log.contains(QStringLiteral("menu: Refresh tab | Add Fav | Copy link | Open in Browser | --")),
                 qPrintable(log));
        QVERIFY2(log.contains(QStringLiteral("clipboard: qrc:/browser/pages/")), qPrintable(log));
        QVERIFY2(log.contains(QStringLiteral("menu: Close tab | Close right tabs (disabled) | Close other tabs")),
                 qPrintable(log));
    }

    void screenshotsAreNumbered()
    {
        const QStringList files = Screenshots();
        QVERIFY2(files.size() >= kMinimumScreenshots, qPrintable(files.join(QLatin1String(", "))));
        for (int i = 0; i < files.size(); ++i) {
            const QString number = QStringLiteral("%1-").arg(i + 1, 2, 10, QLatin1Char('0'));
            QVERIFY2(files.at(i).startsWith(number), qPrintable(files.at(i)));
        }
    }

    void screenshotShowsTheWindow_data()
    {
        QTest::addColumn<QString>("file");
        const QStringList files = Screenshots();
        for (const QString &file : files)
            QTest::newRow(qPrintable(file)) << file;
    }

    void screenshotShowsTheWindow()
    {
        QFETCH(QString, file);
        const QImage image(QDir(m_out).filePath(file));
        QVERIFY(!image.isNull());
        QCOMPARE(image.size(), kWindowSize);

        const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
        QSet<QRgb> colours;
        for (int y = 0; y < pixels.height() && colours.size() < kMinimumColours; ++y) {
            const auto *line = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
            for (int x = 0; x < pixels.width(); ++x)
                colours.insert(line[x]);
        }
        QVERIFY2(colours.size() >= kMinimumColours,
                 qPrintable(QStringLiteral("only %1 colours").arg(colours.size())));
    }

private:
    QStringList Screenshots() const
    {
        return QDir(m_out).entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name);
    }

    QTemporaryDir m_temp;
    QString m_out;
    QString m_output;
};

KELTAB_TEST_MAIN(TstBrowserTour)
#include "tst_browsertour.moc"
