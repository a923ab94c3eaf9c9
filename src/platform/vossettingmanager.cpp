#include "vossettingmanager.h"

#include "guisingleton_p.h"

#include <QAtomicInteger>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QVariant>

namespace {

GuiSingleton<VosSettingManager> g_instance;
QAtomicInteger<int> g_connectionSerial;


const QString kDriver = QStringLiteral("QSQLITE");

// Long enough to ride out another process's short write, short enough that a GUI
// thread stuck behind a lock held for good gives up before the user notices much.
const QString kConnectOptions = QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000");

// A key that cannot collide for different (group, key) pairs: the separator is a
// control character and the group's length is part of it.
QString MemoryKey(const QString &group, const QString &key)
{
    return QString::number(group.size()) + QLatin1Char('\x1f') + group + QLatin1Char('\x1f') + key;
}

// A null QString binds as SQL NULL, which the NOT NULL columns reject; an empty
// text is a real value and is stored as ''.
QString NotNull(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

class VosSettingManager::Private
{
public:
    enum class State { Closed, Open, Memory };

    QString databasePath;            // as set; empty means the default
    State state = State::Closed;
    QString connectionName;
    QSqlDatabase db;
    QSqlQuery selectQuery;
    QSqlQuery upsertQuery;
    // Every value read or written in this session. It only serves reads once the
    // store has fallen back to memory, so that what the session knew survives the
    // failure.
    QHash<QString, QString> memory;

    ~Private() { Close(); }

    QString EffectivePath() const
    {
        if (!databasePath.isEmpty())
            return databasePath;
        return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
            + QStringLiteral("/settings.sqlite");
    }

    void Close()
    {
        // Queries and every QSqlDatabase handle must be gone before the connection
        // is removed, or Qt Sql warns that it is still in use.
        selectQuery = QSqlQuery();
        upsertQuery = QSqlQuery();
        if (db.isValid())
            db.close();
        db = QSqlDatabase();
        if (!connectionName.isEmpty()) {
            QSqlDatabase::removeDatabase(connectionName);
            connectionName.clear();
        }
    }

    void FallBack(const QString &reason)
    {
        Close();
        state = State::Memory;
        qWarning("VosSettingManager: cannot use the settings database \"%s\" (%s); "
                 "settings are kept in memory from now on and will not be saved",
                 qUtf8Printable(QDir::toNativeSeparators(EffectivePath())), qUtf8Printable(reason));
    }

    // Opens the database on first use. @return true when SQL can be used.
    bool Ensure()
    {
        if (state == State::Open)
            return true;
        if (state == State::Memory)
            return false;

        const QString path = EffectivePath();
        if (!QSqlDatabase::isDriverAvailable(kDriver)) {
            FallBack(QStringLiteral("the Qt SQLite driver is not installed"));
            return false;
        }
        const QFileInfo info(path);
        if (!QDir().mkpath(info.absolutePath())) {
            FallBack(QStringLiteral("cannot create the folder %1").arg(QDir::toNativeSeparators(info.absolutePath())));
            return false;
        }

        connectionName = QStringLiteral("KelTabContainer.VosSettingManager.%1")
                             .arg(g_connectionSerial.fetchAndAddRelaxed(1));
        db = QSqlDatabase::addDatabase(kDriver, connectionName);
        db.setDatabaseName(path);
        db.setConnectOptions(kConnectOptions);
        if (!db.open()) {
            FallBack(db.lastError().text());
            return false;
        }

        // SQLite opens lazily: the first statement is what finds out that the file is
        // not a database or is locked. The schema statement doubles as that check.
        QSqlQuery setup(db);
        const bool ready = setup.exec(QStringLiteral("PRAGMA synchronous = FULL"))
            && setup.exec(QStringLiteral(
                "CREATE TABLE IF NOT EXISTS system_values ("
                "setting_group TEXT NOT NULL, "
                "setting_key TEXT NOT NULL, "
                "setting_value TEXT NOT NULL, "
                "PRIMARY KEY (setting_group, setting_key))"));
        if (!ready) {
            const QString reason = setup.lastError().text();
            setup = QSqlQuery();
            FallBack(reason);
            return false;
        }
        setup = QSqlQuery();

        selectQuery = QSqlQuery(db);
        upsertQuery = QSqlQuery(db);
        // Prepared once: reads happen on every gesture update, and re-preparing would
        // cost more than the lookup itself.
        if (!selectQuery.prepare(QStringLiteral(
                "SELECT setting_value FROM system_values WHERE setting_group = ? AND setting_key = ?"))
            || !upsertQuery.prepare(QStringLiteral(
                "INSERT OR REPLACE INTO system_values (setting_group, setting_key, setting_value) "
                "VALUES (?, ?, ?)"))) {
            const QString reason = selectQuery.lastError().isValid() ? selectQuery.lastError().text()
                                                                    : upsertQuery.lastError().text();
            FallBack(reason);
            return false;
        }
        state = State::Open;
        return true;
    }

    QString Read(const QString &group, const QString &key)
    {
        const QString memoryKey = MemoryKey(group, key);
        if (!Ensure())
            return memory.value(memoryKey);

        selectQuery.bindValue(0, NotNull(group));
        selectQuery.bindValue(1, NotNull(key));
        if (!selectQuery.exec()) {
            FallBack(selectQuery.lastError().text());
            return memory.value(memoryKey);
        }
        QString value;
        bool found = false;
        if (selectQuery.next()) {
            value = selectQuery.value(0).toString();
            found = true;
        }
        // Releases the statement's read lock at once instead of at the next exec().
        selectQuery.finish();
        if (found)
            memory.insert(memoryKey, value);
        else
            memory.remove(memoryKey);
        return value;
    }

    void Write(const QString &group, const QString &key, const QString &value)
    {
        memory.insert(MemoryKey(group, key), value);
        if (!Ensure())
            return;

        upsertQuery.bindValue(0, NotNull(group));
        upsertQuery.bindValue(1, NotNull(key));
        upsertQuery.bindValue(2, NotNull(value));
        if (!upsertQuery.exec()) {
            FallBack(upsertQuery.lastError().text());
            return;
        }
        upsertQuery.finish();
    }
};

VosSettingManager::VosSettingManager()
    : d(new Private)
{
}

VosSettingManager::~VosSettingManager() = default;

VosSettingManager *VosSettingManager::Instance()
{
    return g_instance.Instance("VosSettingManager", [] { return new VosSettingManager; });
}

void VosSettingManager::ReleaseInstance()
{
    g_instance.Release("VosSettingManager", [](VosSettingManager *instance) { delete instance; });
}

QString VosSettingManager::GetSystemValue(const QString &group, const QString &key) const
{
    return d->Read(group, key);
}

void VosSettingManager::SetSystemValueSync(const QString &group, const QString &key, const QString &value)
{
    d->Write(group, key, value);
}

void VosSettingManager::SetDatabasePath(const QString &path)
{
    d->Close();
    d->databasePath = path;
    d->state = Private::State::Closed;
    d->memory.clear();
}

QString VosSettingManager::DatabasePath() const
{
    return d->EffectivePath();
}

bool VosSettingManager::IsPersistent() const
{
    return d->state != Private::State::Memory;
}
