// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QString>

#include <memory>

/**
 * Process-wide settings store: text values under a (group, key) pair, kept in an
 * SQLite database through Qt Sql.
 *
 * The database is opened on first use, at DatabasePath(). Every value goes through
 * bound parameters, so any text round-trips exactly (empty, any Unicode, megabytes,
 * quotes, semicolons).
 *
 * Another program's lock (a second instance of the host writing, a backup tool)
 * never loses a change: each statement waits a short, bounded time; a write that
 * still finds the database locked is kept, answered from memory by reads, and
 * retried at the next write and on a timer until it is committed, with every later
 * write queued behind it in order. One warning, naming the file, says so for each
 * stretch of time the lock lasts. Releasing the store makes one last bounded try.
 *
 * A file that is not a database (or a damaged one) is renamed aside, to its name
 * plus ".corrupt-" and the date and time, with one warning naming both, and a fresh
 * database takes its place: the settings start again from their defaults.
 *
 * When the database cannot be used at all (missing SQLite driver, a folder or file
 * that cannot be written), the store prints one warning that starts with
 * "VosSettingManager: cannot use the settings database" and carries on in memory
 * with every value it has read or written so far. Nothing it does later touches the
 * database until SetDatabasePath() names one again, so the warning comes once.
 *
 * Instance() and ReleaseInstance() belong to the GUI thread like everything else:
 * called from another thread they print a warning and refuse (Instance() returns
 * null). ReleaseInstance() may be called from a destructor that it sets off.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT VosSettingManager
{
public:
    /** The single instance, created on first use. */
    static VosSettingManager *Instance();
    /**
     * Destroys the instance, closing its database connection and removing it from
     * Qt Sql's list of connections. A later Instance() starts afresh.
     */
    static void ReleaseInstance();

    /**
     * @return the value stored under @p group and @p key; an empty string when there
     * is none (an empty stored value reads the same).
     */
    QString GetSystemValue(const QString &group, const QString &key) const;
    /**
     * Stores @p value under @p group and @p key, replacing any previous value. When
     * it returns, the value is committed to the database, or, while another program
     * holds the database locked, queued to be committed when the lock goes (see
     * PendingWriteCount()), or, after the database was given up, held in memory.
     */
    void SetSystemValueSync(const QString &group, const QString &key, const QString &value);

    /**
     * Uses the database file @p path from now on; missing folders are created when it
     * is opened. An empty @p path returns to the default. Changes still queued for the
     * old file get one more bounded try there; values held in memory are dropped:
     * the new database is the truth.
     */
    void SetDatabasePath(const QString &path);
    /**
     * @return the database file in use: the one set, or "settings.sqlite" in
     * QStandardPaths::AppDataLocation.
     */
    QString DatabasePath() const;
    /** @return false once the store has given up on its database and works in memory. */
    bool IsPersistent() const;
    /** @return how many changes wait for another program's lock to go (0 normally). */
    int PendingWriteCount() const;

    /** Not copyable: the single instance owns what it holds. */
    VosSettingManager(const VosSettingManager &) = delete;
    /** Not copyable: the single instance owns what it holds. */
    VosSettingManager &operator=(const VosSettingManager &) = delete;

private:
    VosSettingManager();
    ~VosSettingManager();

    class Private;
    const std::unique_ptr<Private> d;
};
