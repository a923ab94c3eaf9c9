// SPDX-License-Identifier: MIT
#include "vossettingmanager.h"

#include "guisingleton_p.h"

#include <QAtomicInteger>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTimer>
#include <QVariant>

namespace {

GuiSingleton<VosSettingManager> g_instance;
QAtomicInteger<int> g_connectionSerial;


const QString kDriver = QStringLiteral("QSQLITE");

// How long one statement waits for another program's lock: long enough to ride out
// its short write, short enough that the GUI thread never stalls for long. A lock
// held longer is waited out by retrying later, not by waiting here.
const QString kConnectOptions = QStringLiteral("QSQLITE_BUSY_TIMEOUT=300");

// Between retries of writes that found the database locked.
constexpr int kRetryIntervalMs = 1000;

// SQLite's primary result codes that the store acts on.
enum SqliteCode { SqliteCorrupt = 11, SqliteBusy = 5, SqliteLocked = 6, SqliteNotADatabase = 26 };

int SqliteCodeOf(const QSqlError &error)
{
    // Extended codes carry the primary code in their low byte.
    return error.nativeErrorCode().toInt() & 0xff;
}

bool IsBusy(const QSqlError &error)
{
    const int code = SqliteCodeOf(error);
    return code == SqliteBusy || code == SqliteLocked;
}

bool IsCorrupt(const QSqlError &error)
{
    const int code = SqliteCodeOf(error);
    return code == SqliteCorrupt || code == SqliteNotADatabase;
}

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

    struct PendingWrite
    {
        QString group;
        QString key;
        QString value;
    };

    QString databasePath;            // as set; empty means the default
    State state = State::Closed;
    QString connectionName;
    QSqlDatabase db;
    QSqlQuery selectQuery;
    QSqlQuery upsertQuery;
    // Every value read or written in this session. It answers reads while the
    // database cannot (locked, or given up), so that what the session knew holds.
    QHash<QString, QString> memory;
    // Writes not yet committed, oldest first, one per (group, key): they wait out
    // another program's lock and are written, in order, as soon as it goes.
    QList<PendingWrite> pending;
    // One warning per stretch of time the database is locked, not one per write.
    bool warnedLocked = false;
    // Retries pending writes while nothing else writes; made on first need, on the
    // GUI thread, which is the store's thread.
    std::unique_ptr<QTimer> retryTimer;

    ~Private()
    {
        // Last chance for writes still waiting: one more bounded try.
        if (!pending.isEmpty() && !Flush() && !pending.isEmpty())
            qWarning("VosSettingManager: the settings database \"%s\" is still locked; %d change(s) could not "
                     "be saved",
                     qUtf8Printable(QDir::toNativeSeparators(EffectivePath())), int(pending.size()));
        Close();
    }

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
        if (state == State::Open)
            state = State::Closed;
    }

    // For failures that no retry mends (no driver, a folder that cannot be made).
    void FallBack(const QString &reason)
    {
        Close();
        state = State::Memory;
        pending.clear();
        qWarning("VosSettingManager: cannot use the settings database \"%s\" (%s); "
                 "settings are kept in memory from now on and will not be saved",
                 qUtf8Printable(QDir::toNativeSeparators(EffectivePath())), qUtf8Printable(reason));
    }

    void Locked(const QString &reason)
    {
        if (!warnedLocked) {
            warnedLocked = true;
            qWarning("VosSettingManager: the settings database \"%s\" is locked by another program (%s); "
                     "changes are kept and saved as soon as it is free",
                     qUtf8Printable(QDir::toNativeSeparators(EffectivePath())), qUtf8Printable(reason));
        }
        ScheduleRetry();
    }

    void ScheduleRetry()
    {
        if (pending.isEmpty() || !QCoreApplication::instance())
            return;
        if (!retryTimer) {
            retryTimer = std::make_unique<QTimer>();
            retryTimer->setSingleShot(true);
            retryTimer->setInterval(kRetryIntervalMs);
            QObject::connect(retryTimer.get(), &QTimer::timeout, retryTimer.get(), [this] { Flush(); });
        }
        if (!retryTimer->isActive())
            retryTimer->start();
    }

    // A file that is not a database (or no longer one) is moved aside, under a name
    // with the time, for the user to rescue, and a fresh database takes its place:
    // the defaults come back rather than a session that can never save.
    bool SetAside(const QString &reason)
    {
        Close();
        const QString path = EffectivePath();
        const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
        QString aside = path + QStringLiteral(".corrupt-") + stamp;
        for (int n = 1; QFileInfo::exists(aside); ++n)
            aside = path + QStringLiteral(".corrupt-%1-%2").arg(stamp).arg(n);
        if (!QFile::rename(path, aside)) {
            FallBack(reason);
            return false;
        }
        // The journal belongs to the broken file, not to the new one.
        for (const char *suffix : {"-journal", "-wal", "-shm"}) {
            const QString side = path + QLatin1String(suffix);
            if (QFileInfo::exists(side))
                QFile::rename(side, aside + QLatin1String(suffix));
        }
        memory.clear();
        qWarning("VosSettingManager: the settings database \"%s\" is damaged (%s); it was moved to \"%s\" "
                 "and the settings start again from their defaults",
                 qUtf8Printable(QDir::toNativeSeparators(path)), qUtf8Printable(reason),
                 qUtf8Printable(QDir::toNativeSeparators(aside)));
        return true;
    }

    // Acts on a failed statement. @return true when the database may be tried again
    // at once (after setting a damaged file aside).
    bool Failed(const QSqlError &error)
    {
        if (IsBusy(error)) {
            Close();
            Locked(error.text());
            return false;
        }
        if (IsCorrupt(error))
            return SetAside(error.text());
        FallBack(error.text());
        return false;
    }

    // Opens the database on first use, or again after a lock. @return true when SQL
    // can be used.
    bool Ensure()
    {
        if (state == State::Open)
            return true;
        if (state == State::Memory)
            return false;
        // At most one fresh start after setting a damaged file aside.
        for (int attempt = 0; attempt < 2; ++attempt) {
            const QSqlError error = Open();
            if (state == State::Open)
                return true;
            if (state == State::Memory || !error.isValid() || !Failed(error))
                return false;
        }
        return false;
    }

    // @return the error of the statement that failed; state is Open on success.
    QSqlError Open()
    {
        const QString path = EffectivePath();
        if (!QSqlDatabase::isDriverAvailable(kDriver)) {
            FallBack(QStringLiteral("the Qt SQLite driver is not installed"));
            return QSqlError();
        }
        const QFileInfo info(path);
        if (!QDir().mkpath(info.absolutePath())) {
            FallBack(QStringLiteral("cannot create the folder %1").arg(QDir::toNativeSeparators(info.absolutePath())));
            return QSqlError();
        }

        connectionName = QStringLiteral("KelTabContainer.VosSettingManager.%1")
                             .arg(g_connectionSerial.fetchAndAddRelaxed(1));
        db = QSqlDatabase::addDatabase(kDriver, connectionName);
        db.setDatabaseName(path);
        db.setConnectOptions(kConnectOptions);
        if (!db.open()) {
            FallBack(db.lastError().text());
            return QSqlError();
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
            const QSqlError error = setup.lastError();
            setup = QSqlQuery();
            Close();
            return error;
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
            const QSqlError error = selectQuery.lastError().isValid() ? selectQuery.lastError()
                                                                      : upsertQuery.lastError();
            Close();
            return error;
        }
        state = State::Open;
        return QSqlError();
    }

    bool IsPending(const QString &group, const QString &key) const
    {
        for (const PendingWrite &write : pending) {
            if (write.group == group && write.key == key)
                return true;
        }
        return false;
    }

    QString Read(const QString &group, const QString &key)
    {
        const QString memoryKey = MemoryKey(group, key);
        // A change still waiting for the database is newer than what it holds.
        if (IsPending(group, key) || !Ensure())
            return memory.value(memoryKey);

        selectQuery.bindValue(0, NotNull(group));
        selectQuery.bindValue(1, NotNull(key));
        if (!selectQuery.exec()) {
            const QSqlError error = selectQuery.lastError();
            selectQuery.finish();
            if (Failed(error) && Ensure())
                return Read(group, key);
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
        if (state == State::Memory)
            return;
        for (int i = 0; i < pending.size(); ++i) {
            if (pending.at(i).group == group && pending.at(i).key == key) {
                pending.removeAt(i);
                break;
            }
        }
        pending.append({group, key, value});
        Flush();
    }

    // Writes every pending change in one transaction. @return true when none is
    // left waiting.
    bool Flush()
    {
        if (pending.isEmpty())
            return true;
        if (!Ensure())
            return false;
        QSqlQuery transaction(db);
        // IMMEDIATE takes the write lock up front, so that a lock held elsewhere shows
        // here, before anything is half written.
        if (!transaction.exec(QStringLiteral("BEGIN IMMEDIATE"))) {
            const QSqlError error = transaction.lastError();
            transaction = QSqlQuery();
            return Failed(error) && Flush();
        }
        for (const PendingWrite &write : qAsConst(pending)) {
            upsertQuery.bindValue(0, NotNull(write.group));
            upsertQuery.bindValue(1, NotNull(write.key));
            upsertQuery.bindValue(2, NotNull(write.value));
            if (!upsertQuery.exec()) {
                const QSqlError error = upsertQuery.lastError();
                upsertQuery.finish();
                transaction.exec(QStringLiteral("ROLLBACK"));
                transaction = QSqlQuery();
                return Failed(error) && Flush();
            }
            upsertQuery.finish();
        }
        if (!transaction.exec(QStringLiteral("COMMIT"))) {
            const QSqlError error = transaction.lastError();
            transaction.exec(QStringLiteral("ROLLBACK"));
            transaction = QSqlQuery();
            return Failed(error) && Flush();
        }
        pending.clear();
        warnedLocked = false;
        if (retryTimer)
            retryTimer->stop();
        return true;
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
    // Changes still waiting belong to the old file: one more bounded try there.
    d->Flush();
    d->Close();
    d->databasePath = path;
    d->state = Private::State::Closed;
    d->memory.clear();
    d->pending.clear();
    d->warnedLocked = false;
}

QString VosSettingManager::DatabasePath() const
{
    return d->EffectivePath();
}

bool VosSettingManager::IsPersistent() const
{
    return d->state != Private::State::Memory;
}

int VosSettingManager::PendingWriteCount() const
{
    return int(d->pending.size());
}
