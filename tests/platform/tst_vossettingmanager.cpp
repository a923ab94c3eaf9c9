// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "singletontest.h"
#include "vossettingmanager.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <memory>

namespace {

const QString kGroup = QStringLiteral("SYS_SETTING");

QRegularExpression FallbackWarning()
{
    return QRegularExpression(QStringLiteral("^VosSettingManager: cannot use the settings database "));
}

QStringList OurConnections()
{
    QStringList ours;
    const QStringList names = QSqlDatabase::connectionNames();
    for (const QString &name : names) {
        if (name.startsWith(QLatin1String("KelTabContainer.VosSettingManager.")))
            ours << name;
    }
    return ours;
}

// Reads a value through a connection of its own, as another process would see it.
QString ReadDirectly(const QString &path, const QString &group, const QString &key)
{
    const QString name = QStringLiteral("tst_vossettingmanager.direct");
    QString value = QStringLiteral("<absent>");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        if (db.open()) {
            QSqlQuery query(db);
            query.prepare(QStringLiteral(
                "SELECT setting_value FROM system_values WHERE setting_group = ? AND setting_key = ?"));
            query.addBindValue(group);
            query.addBindValue(key);
            if (query.exec() && query.next())
                value = query.value(0).toString();
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return value;
}

QRegularExpression LockedWarning(const QString &path)
{
    return QRegularExpression(QStringLiteral("^VosSettingManager: the settings database \"%1\" is locked by another "
                                             "program .*; changes are kept and saved as soon as it is free$")
                                  .arg(QRegularExpression::escape(QDir::toNativeSeparators(path))));
}

QRegularExpression SetAsideWarning(const QString &path)
{
    const QString native = QRegularExpression::escape(QDir::toNativeSeparators(path));
    return QRegularExpression(QStringLiteral("^VosSettingManager: the settings database \"%1\" is damaged .*; it was "
                                             "moved to \"%1\\.corrupt-\\d{8}-\\d{6}\" and the settings start again "
                                             "from their defaults$")
                                  .arg(native));
}

// Another program that holds the database locked until it is released.
class LockHolder
{
public:
    ~LockHolder() { Release(); }

    bool Lock(const QString &path)
    {
        m_process.setProgram(QStringLiteral(KELTAB_SETTINGS_LOCK_HOLDER));
        m_process.setArguments({path});
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start();
        if (!m_process.waitForStarted(10000))
            return false;
        QByteArray out;
        while (!out.contains("locked\n") && m_process.waitForReadyRead(10000))
            out += m_process.readAllStandardOutput();
        return out.contains("locked\n");
    }

    bool Release()
    {
        if (m_process.state() == QProcess::NotRunning)
            return true;
        m_process.write("\n");
        m_process.closeWriteChannel();
        return m_process.waitForFinished(10000) && m_process.exitCode() == 0;
    }

private:
    QProcess m_process;
};

} // namespace

class TstVosSettingManager : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;

private Q_SLOTS:
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        QVERIFY(m_dir->isValid());
        m_path = m_dir->filePath(QStringLiteral("settings.sqlite"));
        VosSettingManager::Instance()->SetDatabasePath(m_path);
    }

    void cleanup()
    {
        VosSettingManager::ReleaseInstance();
        QVERIFY(OurConnections().isEmpty());
        m_dir.reset();
    }

    void absentValueIsEmpty()
    {
        const QString value = VosSettingManager::Instance()->GetSystemValue(kGroup, QStringLiteral("missing"));
        QVERIFY(value.isEmpty());
        QVERIFY(VosSettingManager::Instance()->IsPersistent());
    }

    void valuesRoundTripExactly_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("empty") << QString();
        QTest::newRow("plain") << QStringLiteral("1");
        QTest::newRow("unicode") << QStringLiteral("手势 \u00e9\u0301 \U0001F600 \u202Eright-to-left");
        QTest::newRow("quotes and semicolons")
            << QStringLiteral("it's \"quoted\"; '); DROP TABLE system_values; -- ;;");
        QTest::newRow("line breaks") << QStringLiteral("a\nb\r\nc\td");
        QTest::newRow("1 MiB") << QString(1024 * 1024, QLatin1Char('x'));
        QString mixed;
        for (int i = 0; i < 1024 * 1024 / 8; ++i)
            mixed += QStringLiteral("a;'\"\u00fc\U0001F600");
        QTest::newRow("1 MiB of quotes and Unicode") << mixed;
    }

    void valuesRoundTripExactly()
    {
        QFETCH(QString, value);
        VosSettingManager::Instance()->SetSystemValueSync(kGroup, QStringLiteral("key"), value);
        QCOMPARE(VosSettingManager::Instance()->GetSystemValue(kGroup, QStringLiteral("key")), value);

        // And from the file, by a fresh store.
        VosSettingManager::ReleaseInstance();
        VosSettingManager::Instance()->SetDatabasePath(m_path);
        QCOMPARE(VosSettingManager::Instance()->GetSystemValue(kGroup, QStringLiteral("key")), value);
        QVERIFY(VosSettingManager::Instance()->IsPersistent());
    }

    void groupAndKeyRoundTripExactly()
    {
        const QString group = QStringLiteral("grp'; --");
        const QString key = QStringLiteral("k\"ey\U0001F600");
        VosSettingManager::Instance()->SetSystemValueSync(group, key, QStringLiteral("v"));
        QCOMPARE(VosSettingManager::Instance()->GetSystemValue(group, key), QStringLiteral("v"));
        QCOMPARE(ReadDirectly(m_path, group, key), QStringLiteral("v"));
    }

    void writeIsCommittedWhenItReturns()
    {
        VosSettingManager::Instance()->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("first"));
        QCOMPARE(ReadDirectly(m_path, kGroup, QStringLiteral("k")), QStringLiteral("first"));
        VosSettingManager::Instance()->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("second"));
        QCOMPARE(ReadDirectly(m_path, kGroup, QStringLiteral("k")), QStringLiteral("second"));
    }

    void writeReplacesPreviousValue()
    {
        VosSettingManager *store = VosSettingManager::Instance();
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("a"));
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("b"));
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("k")), QStringLiteral("b"));
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QString());
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("k")), QString());
        QCOMPARE(ReadDirectly(m_path, kGroup, QStringLiteral("k")), QString());
    }

    void groupsKeepTheirOwnKeys()
    {
        VosSettingManager *store = VosSettingManager::Instance();
        store->SetSystemValueSync(QStringLiteral("A"), QStringLiteral("k"), QStringLiteral("in A"));
        store->SetSystemValueSync(QStringLiteral("B"), QStringLiteral("k"), QStringLiteral("in B"));
        // A group/key split that would collide if the two were simply concatenated.
        store->SetSystemValueSync(QStringLiteral("Ak"), QString(), QStringLiteral("in Ak"));
        QCOMPARE(store->GetSystemValue(QStringLiteral("A"), QStringLiteral("k")), QStringLiteral("in A"));
        QCOMPARE(store->GetSystemValue(QStringLiteral("B"), QStringLiteral("k")), QStringLiteral("in B"));
        QCOMPARE(store->GetSystemValue(QStringLiteral("Ak"), QString()), QStringLiteral("in Ak"));
    }

    void missingFoldersAreCreated()
    {
        const QString path = m_dir->filePath(QStringLiteral("a/b/c/settings.sqlite"));
        VosSettingManager::Instance()->SetDatabasePath(path);
        QVERIFY(!QFile::exists(path));
        VosSettingManager::Instance()->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("v"));
        QVERIFY(QFile::exists(path));
        QCOMPARE(ReadDirectly(path, kGroup, QStringLiteral("k")), QStringLiteral("v"));
    }

    void defaultPathIsUnderAppData()
    {
        // Point the home folder (which the test-mode standard paths live under) into
        // the temporary folder, so the default location is exercised for real.
        const QByteArray oldHome = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(m_dir->filePath(QStringLiteral("home"))));
        VosSettingManager::ReleaseInstance();
        VosSettingManager *store = VosSettingManager::Instance();
        const QString expected = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
            + QStringLiteral("/settings.sqlite");
        const QString actual = store->DatabasePath();
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("v"));
        const bool exists = QFile::exists(expected);
        VosSettingManager::ReleaseInstance();
        qputenv("HOME", oldHome);

        QCOMPARE(actual, expected);
        QVERIFY(expected.startsWith(m_dir->path()));
        QVERIFY(exists);
    }

    void emptyPathReturnsToDefault()
    {
        VosSettingManager::Instance()->SetDatabasePath(QString());
        QCOMPARE(VosSettingManager::Instance()->DatabasePath(),
                 QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
                     + QStringLiteral("/settings.sqlite"));
    }

    void changingPathSwitchesDatabase()
    {
        VosSettingManager *store = VosSettingManager::Instance();
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("one"));
        const QString other = m_dir->filePath(QStringLiteral("other.sqlite"));
        store->SetDatabasePath(other);
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("k")), QString());
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("two"));
        store->SetDatabasePath(m_path);
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("k")), QStringLiteral("one"));
        QCOMPARE(ReadDirectly(other, kGroup, QStringLiteral("k")), QStringLiteral("two"));
        QCOMPARE(OurConnections().size(), 1);
    }

    // A damaged file used to send the whole session to memory: every change was
    // lost at the next start, and the file stayed in the way for good.
    void corruptFileIsSetAsideAndDefaultsUsed()
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        const QByteArray garbage = QByteArray("this is not an SQLite database; ") + QByteArray(4096, '\xA5');
        file.write(garbage);
        file.close();

        VosSettingManager *store = VosSettingManager::Instance();
        QTest::ignoreMessage(QtWarningMsg, SetAsideWarning(m_path));
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("k")), QString());
        QVERIFY(store->IsPersistent());

        // Set aside under a dated name, unchanged, for the user to rescue.
        const QStringList aside = QDir(m_dir->path()).entryList({QStringLiteral("settings.sqlite.corrupt-*")});
        QCOMPARE(aside.size(), 1);
        QVERIFY2(QRegularExpression(QStringLiteral("^settings\\.sqlite\\.corrupt-\\d{8}-\\d{6}$"))
                     .match(aside.first())
                     .hasMatch(),
                 qPrintable(aside.first()));
        QFile setAside(m_dir->filePath(aside.first()));
        QVERIFY(setAside.open(QIODevice::ReadOnly));
        QCOMPARE(setAside.readAll(), garbage);

        // And the fresh database saves again.
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("v"));
        QCOMPARE(ReadDirectly(m_path, kGroup, QStringLiteral("k")), QStringLiteral("v"));
        VosSettingManager::ReleaseInstance();
        VosSettingManager::Instance()->SetDatabasePath(m_path);
        QCOMPARE(VosSettingManager::Instance()->GetSystemValue(kGroup, QStringLiteral("k")), QStringLiteral("v"));
    }

    // One lock held for over a second by another program used to send the whole
    // session to memory: every later change was lost at the next start.
    void lockHeldByAnotherProgramLosesNoChange()
    {
        VosSettingManager *store = VosSettingManager::Instance();
        store->SetSystemValueSync(kGroup, QStringLiteral("before"), QStringLiteral("known"));

        LockHolder holder;
        QVERIFY(holder.Lock(m_path));
        QTest::ignoreMessage(QtWarningMsg, LockedWarning(m_path));
        store->SetSystemValueSync(kGroup, QStringLiteral("during"), QStringLiteral("lock"));
        store->SetSystemValueSync(kGroup, QStringLiteral("before"), QStringLiteral("changed"));
        store->SetSystemValueSync(kGroup, QStringLiteral("during"), QStringLiteral("lock, again"));
        QVERIFY(store->IsPersistent());
        QCOMPARE(store->PendingWriteCount(), 2);
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("during")), QStringLiteral("lock, again"));
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("before")), QStringLiteral("changed"));
        QVERIFY(holder.Release());

        // The next write takes everything queued along.
        store->SetSystemValueSync(kGroup, QStringLiteral("after"), QStringLiteral("x"));
        QCOMPARE(store->PendingWriteCount(), 0);
        QCOMPARE(ReadDirectly(m_path, kGroup, QStringLiteral("before")), QStringLiteral("changed"));
        QCOMPARE(ReadDirectly(m_path, kGroup, QStringLiteral("during")), QStringLiteral("lock, again"));
        QCOMPARE(ReadDirectly(m_path, kGroup, QStringLiteral("after")), QStringLiteral("x"));

        // A second lock later warns again, once.
        QVERIFY(holder.Lock(m_path));
        QTest::ignoreMessage(QtWarningMsg, LockedWarning(m_path));
        store->SetSystemValueSync(kGroup, QStringLiteral("second"), QStringLiteral("y"));
        store->SetSystemValueSync(kGroup, QStringLiteral("second"), QStringLiteral("z"));
        QVERIFY(holder.Release());
        store->SetSystemValueSync(kGroup, QStringLiteral("third"), QStringLiteral("w"));
        QCOMPARE(ReadDirectly(m_path, kGroup, QStringLiteral("second")), QStringLiteral("z"));
    }

    void queuedChangesAreSavedWhenTheLockGoes()
    {
        VosSettingManager *store = VosSettingManager::Instance();
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("old"));
        LockHolder holder;
        QVERIFY(holder.Lock(m_path));
        QTest::ignoreMessage(QtWarningMsg, LockedWarning(m_path));
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("new"));
        QCOMPARE(store->PendingWriteCount(), 1);
        QVERIFY(holder.Release());
        // No further write comes: the store retries by itself.
        QTRY_COMPARE(store->PendingWriteCount(), 0);
        QCOMPARE(ReadDirectly(m_path, kGroup, QStringLiteral("k")), QStringLiteral("new"));
    }

    void queuedChangesAreSavedAtRelease()
    {
        VosSettingManager *store = VosSettingManager::Instance();
        LockHolder holder;
        QVERIFY(holder.Lock(m_path));
        QTest::ignoreMessage(QtWarningMsg, LockedWarning(m_path));
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("kept"));
        QVERIFY(holder.Release());
        VosSettingManager::ReleaseInstance();
        QCOMPARE(ReadDirectly(m_path, kGroup, QStringLiteral("k")), QStringLiteral("kept"));
    }

    void readsDuringALockAnswerFromWhatTheStoreKnows()
    {
        VosSettingManager *store = VosSettingManager::Instance();
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("known"));
        VosSettingManager::ReleaseInstance();
        store = VosSettingManager::Instance();
        store->SetDatabasePath(m_path);
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("k")), QStringLiteral("known"));

        LockHolder holder;
        QVERIFY(holder.Lock(m_path));
        QTest::ignoreMessage(QtWarningMsg, LockedWarning(m_path));
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("k")), QStringLiteral("known"));
        QVERIFY(holder.Release());
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("k")), QStringLiteral("known"));
        QVERIFY(store->IsPersistent());
    }

    void unwritableLocationWarnsOnce_data()
    {
        QTest::addColumn<QString>("relativePath");
        // A folder that cannot be created because a file of that name is in the way.
        QTest::newRow("parent is a file") << QStringLiteral("blocker/settings.sqlite");
        // A database path that names a folder.
        QTest::newRow("path is a folder") << QStringLiteral("folder");
    }

    void unwritableLocationWarnsOnce()
    {
        QFETCH(QString, relativePath);
        QFile blocker(m_dir->filePath(QStringLiteral("blocker")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("folder")));

        VosSettingManager *store = VosSettingManager::Instance();
        store->SetDatabasePath(m_dir->filePath(relativePath));
        QTest::ignoreMessage(QtWarningMsg, FallbackWarning());
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("v"));
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("k")), QStringLiteral("v"));
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("w"));
        QCOMPARE(store->GetSystemValue(kGroup, QStringLiteral("k")), QStringLiteral("w"));
        QVERIFY(!store->IsPersistent());

        // A usable path ends the fallback.
        store->SetDatabasePath(m_path);
        store->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("saved"));
        QVERIFY(store->IsPersistent());
        QCOMPARE(ReadDirectly(m_path, kGroup, QStringLiteral("k")), QStringLiteral("saved"));
    }

    void releaseRemovesTheConnection()
    {
        VosSettingManager::Instance()->SetSystemValueSync(kGroup, QStringLiteral("k"), QStringLiteral("v"));
        QCOMPARE(OurConnections().size(), 1);
        VosSettingManager::ReleaseInstance();
        QVERIFY(OurConnections().isEmpty());
        // Releasing twice is harmless.
        VosSettingManager::ReleaseInstance();
    }

    // A worker thread used to be able to make the store, whose database connection
    // then belonged to that thread.
    void offTheGuiThreadIsRefused()
    {
        SingletonTest::CheckRefusedOffTheGuiThread<VosSettingManager>("VosSettingManager");
    }
};

KELTAB_TEST_MAIN(TstVosSettingManager)
#include "tst_vossettingmanager.moc"
