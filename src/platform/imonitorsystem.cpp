// SPDX-License-Identifier: MIT
#include "imonitorsystem.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QStandardPaths>

namespace {

IMonitorSystem *g_installed = nullptr;   // null: the default recorder

QString &ConfiguredLogPath()
{
    static QString path;
    return path;
}

IMonitorSystem &DefaultSystem()
{
    // A function-local static: it exists from the first report to process exit, so
    // a report made late in shutdown still finds a recorder.
    static IMonitorSystem system;
    return system;
}

// Paths already warned about: a log that cannot be written must not flood the
// output with one warning per gesture.
bool FirstFailureFor(const QString &path)
{
    static QSet<QString> warned;
    if (warned.contains(path))
        return false;
    warned.insert(path);
    return true;
}

} // namespace

IMonitorSystem::IMonitorSystem() = default;

IMonitorSystem::IMonitorSystem(const IMonitorSystem &) = default;

IMonitorSystem &IMonitorSystem::operator=(const IMonitorSystem &) = default;

IMonitorSystem::~IMonitorSystem()
{
    if (g_installed == this)
        g_installed = nullptr;
}

void IMonitorSystem::ReportUsageEvent(const QString &event, const QString &pluginCode, const QStringList &parameters)
{
    QJsonObject record;
    record.insert(QStringLiteral("time"),
                  QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    record.insert(QStringLiteral("event"), event);
    record.insert(QStringLiteral("plugin"), pluginCode);
    record.insert(QStringLiteral("parameters"), QJsonArray::fromStringList(parameters));
    // Compact JSON escapes line breaks inside strings, so one event is one line.
    const QByteArray line = QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n';

    const QString path = LogFilePath();
    QFile file(path);
    const bool written = QDir().mkpath(QFileInfo(path).absolutePath())
        && file.open(QIODevice::WriteOnly | QIODevice::Append)
        && file.write(line) == line.size();
    if (!written && FirstFailureFor(path)) {
        qWarning("IMonitorSystem: cannot write the usage log \"%s\" (%s); usage events are dropped",
                 qUtf8Printable(QDir::toNativeSeparators(path)), qUtf8Printable(file.errorString()));
    }
}

IMonitorSystem *IMonitorSystem::GetMonitorSystem()
{
    return g_installed ? g_installed : &DefaultSystem();
}

void IMonitorSystem::SetMonitorSystem(IMonitorSystem *system)
{
    g_installed = system;
}

QString IMonitorSystem::LogFilePath()
{
    const QString &configured = ConfiguredLogPath();
    if (!configured.isEmpty())
        return configured;
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
        + QStringLiteral("/usage-events.jsonl");
}

void IMonitorSystem::SetLogFilePath(const QString &path)
{
    ConfiguredLogPath() = path;
}
