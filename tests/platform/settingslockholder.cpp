// SPDX-License-Identifier: MIT
// A second program for the settings store's tests: holds an exclusive lock on an
// SQLite database until told to let go, as another instance of the host or a
// backup tool would.
//
// Usage: settingslockholder DATABASE
// Prints "locked" once it holds the lock, then waits for a line on its standard
// input, rolls back, prints "released" and exits.

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTextStream>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: settingslockholder DATABASE\n");
        return 2;
    }
    int status = 0;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("holder"));
        db.setDatabaseName(QString::fromLocal8Bit(argv[1]));
        if (!db.open()) {
            std::fprintf(stderr, "cannot open: %s\n", qPrintable(db.lastError().text()));
            return 1;
        }
        QSqlQuery lock(db);
        if (!lock.exec(QStringLiteral("BEGIN EXCLUSIVE"))) {
            std::fprintf(stderr, "cannot lock: %s\n", qPrintable(lock.lastError().text()));
            return 1;
        }
        std::printf("locked\n");
        std::fflush(stdout);

        QTextStream in(stdin);
        in.readLine();

        status = lock.exec(QStringLiteral("ROLLBACK")) ? 0 : 1;
        lock = QSqlQuery();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("holder"));
    std::printf("released\n");
    std::fflush(stdout);
    return status;
}
