// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "imonitorsystem.h"
#include "recordingmonitor.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <memory>

namespace {

using KelTest::RecordingMonitor;

QList<QByteArray> LogLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> lines = file.readAll().split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

} // namespace

class TstIMonitorSystem : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;

private Q_SLOTS:
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        QVERIFY(m_dir->isValid());
        IMonitorSystem::SetLogFilePath(m_dir->filePath(QStringLiteral("usage.jsonl")));
    }

    void cleanup()
    {
        IMonitorSystem::SetMonitorSystem(nullptr);
        IMonitorSystem::SetLogFilePath(QString());
        m_dir.reset();
    }

    void installedRecorderReceivesEvents()
    {
        RecordingMonitor recorder;
        IMonitorSystem *defaultSystem = IMonitorSystem::GetMonitorSystem();
        QVERIFY(defaultSystem);
        QVERIFY(defaultSystem != &recorder);

        IMonitorSystem::SetMonitorSystem(&recorder);
        QCOMPARE(IMonitorSystem::GetMonitorSystem(), static_cast<IMonitorSystem *>(&recorder));
        IMonitorSystem::GetMonitorSystem()->ReportUsageEvent(QStringLiteral("e"), QStringLiteral("p"),
                                                             {QStringLiteral("x")});
        QCOMPARE(recorder.events.size(), 1);
        QCOMPARE(recorder.events.at(0).event, QStringLiteral("e"));
        QCOMPARE(recorder.events.at(0).pluginCode, QStringLiteral("p"));
        QCOMPARE(recorder.events.at(0).parameters, QStringList{QStringLiteral("x")});
        // The default recorder was not used.
        QVERIFY(!QFile::exists(IMonitorSystem::LogFilePath()));

        IMonitorSystem::SetMonitorSystem(nullptr);
        QCOMPARE(IMonitorSystem::GetMonitorSystem(), defaultSystem);
    }

    void destroyedRecorderUninstallsItself()
    {
        IMonitorSystem *defaultSystem = IMonitorSystem::GetMonitorSystem();
        {
            RecordingMonitor recorder;
            IMonitorSystem::SetMonitorSystem(&recorder);
        }
        QCOMPARE(IMonitorSystem::GetMonitorSystem(), defaultSystem);
    }

    void defaultAppendsOneJsonObjectPerLine()
    {
        const QString path = m_dir->filePath(QStringLiteral("missing/folders/usage.jsonl"));
        IMonitorSystem::SetLogFilePath(path);
        const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
        IMonitorSystem *system = IMonitorSystem::GetMonitorSystem();
        system->ReportUsageEvent(QStringLiteral("Start_SystemSetting_GestureFunction"),
                                 QStringLiteral("kel_webpage"), {QStringLiteral("New tab")});
        system->ReportUsageEvent(QStringLiteral("second"), QStringLiteral("p"),
                                 {QStringLiteral("line\nbreak"), QStringLiteral("\u624b\u52bf \"q\"")});
        system->ReportUsageEvent(QStringLiteral("third"), QString(), {});

        const QList<QByteArray> lines = LogLines(path);
        QCOMPARE(lines.size(), 3);

        QJsonParseError error;
        const QJsonObject first = QJsonDocument::fromJson(lines.at(0), &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(first.value(QStringLiteral("event")).toString(), QStringLiteral("Start_SystemSetting_GestureFunction"));
        QCOMPARE(first.value(QStringLiteral("plugin")).toString(), QStringLiteral("kel_webpage"));
        QCOMPARE(first.value(QStringLiteral("parameters")).toArray(), QJsonArray{QStringLiteral("New tab")});
        const QString timeText = first.value(QStringLiteral("time")).toString();
        QVERIFY(timeText.endsWith(QLatin1Char('Z')));
        const QDateTime time = QDateTime::fromString(timeText, Qt::ISODateWithMs);
        QVERIFY(time.isValid());
        QCOMPARE(time.offsetFromUtc(), 0);
        QVERIFY(time >= before);
        QVERIFY(time <= QDateTime::currentDateTimeUtc().addSecs(1));

        const QJsonObject second = QJsonDocument::fromJson(lines.at(1), &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(second.value(QStringLiteral("parameters")).toArray(),
                 (QJsonArray{QStringLiteral("line\nbreak"), QStringLiteral("\u624b\u52bf \"q\"")}));

        const QJsonObject third = QJsonDocument::fromJson(lines.at(2), &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(third.value(QStringLiteral("parameters")).toArray(), QJsonArray());
    }

    void defaultAppendsToAnExistingLog()
    {
        const QString path = IMonitorSystem::LogFilePath();
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\"event\":\"old\"}\n");
        file.close();
        IMonitorSystem::GetMonitorSystem()->ReportUsageEvent(QStringLiteral("new"), QString(), {});
        const QList<QByteArray> lines = LogLines(path);
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines.at(0), QByteArray("{\"event\":\"old\"}"));
        QCOMPARE(QJsonDocument::fromJson(lines.at(1)).object().value(QStringLiteral("event")).toString(),
                 QStringLiteral("new"));
    }

    void unwritableLogWarnsOnce()
    {
        QFile blocker(m_dir->filePath(QStringLiteral("blocker")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        IMonitorSystem::SetLogFilePath(m_dir->filePath(QStringLiteral("blocker/usage.jsonl")));
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("^IMonitorSystem: cannot write the usage log ")));
        for (int i = 0; i < 3; ++i)
            IMonitorSystem::GetMonitorSystem()->ReportUsageEvent(QStringLiteral("e"), QString(), {});
        QVERIFY(!QFile::exists(IMonitorSystem::LogFilePath()));
    }

    void defaultLogPathIsUnderAppData()
    {
        IMonitorSystem::SetLogFilePath(QString());
        QCOMPARE(IMonitorSystem::LogFilePath(),
                 QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
                     + QStringLiteral("/usage-events.jsonl"));
    }
};

KELTAB_TEST_MAIN(TstIMonitorSystem)
#include "tst_imonitorsystem.moc"
