// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "StoreFixture.h"

#include <QFileInfo>

#include <sqlite3.h>

using namespace metricpost;
using namespace metricpost::test;

TEST_F(Store, AFailedWriteLeavesAnEmptyNewDatabase)
{
    MPDB database(u"ab12cd"_qs, surroundings());
    database.insertRow(PersistenceType::people, "{}");
    query(file, u"DROP TABLE "_qs + table);
    LogCapture log;
    database.insertRow(PersistenceType::events, "{}");
    EXPECT_TRUE(log.contains(u"error Failed to insert row into table "_qs + table));
    EXPECT_TRUE(log.contains(u"error no such table: "_qs + table));
    EXPECT_TRUE(log.contains(u"info Deleted database file at path: "_qs + file));
    EXPECT_TRUE(log.contains(u"warning No database connection found. Calling MPDB.open()"_qs));
    EXPECT_EQ(query(file, u"SELECT count(*) FROM metricpost_ab12cd_people"_qs),
              QStringList{u"0"_qs});
    database.insertRow(PersistenceType::events, "{}");
    EXPECT_EQ(database.readRows(PersistenceType::events, 5).size(), 1);
}

TEST_F(Store, ABrokenFileIsReplacedWithItsCompanions)
{
    for (const QString &suffix : {QString(), u"-wal"_qs, u"-shm"_qs}) {
        QFile broken(file + suffix);
        ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
        broken.write(QByteArray(5000, 'x'));
    }
    MPDB database(u"ab12cd"_qs, surroundings());
    database.insertRow(PersistenceType::events, "{\"lost\":1}");
    database.insertRow(PersistenceType::events, "{\"kept\":1}");
    EXPECT_EQ(database.readRows(PersistenceType::events, MPDB::allRows).size(), 1);
    EXPECT_EQ(query(file, u"PRAGMA integrity_check"_qs), QStringList{u"ok"_qs});
}

TEST_F(Store, DamageThatAReadFindsEndsWithANewFile)
{
    fill(100);
    damage();
    MPDB database(u"ab12cd"_qs, surroundings());
    LogCapture log;
    EXPECT_TRUE(names(database).isEmpty());
    EXPECT_TRUE(log.contains(u"error database disk image is malformed"_qs));
    EXPECT_TRUE(log.contains(u"info Deleted database file at path: "_qs + file));
    insert(database, u"new"_qs);
    EXPECT_EQ(names(database), QStringList{u"new"_qs});
    EXPECT_EQ(query(file, u"PRAGMA integrity_check"_qs), QStringList{u"ok"_qs});
}

TEST_F(Store, AFileThatAnotherHasOpenIsNotTakenAway)
{
    fill(100);
    damage();
    MPDB database(u"ab12cd"_qs, surroundings());
    MPDB other(u"ab12cd"_qs, surroundings());
    LogCapture log;
    EXPECT_TRUE(names(database).isEmpty());
    insert(other, u"other"_qs);
    insert(database, u"own"_qs);
    EXPECT_EQ(names(other), (QStringList{u"other"_qs, u"own"_qs}));
    EXPECT_EQ(query(file, u"PRAGMA integrity_check"_qs), QStringList{u"ok"_qs});
    // A missing table says nothing against the other tables.
    other.insertRow(PersistenceType::people, "{}");
    query(file, u"DROP TABLE "_qs + table);
    insert(database, u"lost"_qs);
    insert(database, u"kept"_qs);
    EXPECT_EQ(names(other), QStringList{u"kept"_qs});
    EXPECT_EQ(other.readRows(PersistenceType::people, 1).size(), 1);
    EXPECT_TRUE(log.lines().filter(u"Deleted database file"_qs).isEmpty());
}

TEST_F(Store, AnothersLockLosesNothing)
{
    MPDB::Surroundings few = surroundings();
    few.limits.maxWaitingRows = 3;
    MPDB database(u"ab12cd"_qs, few);
    insert(database, u"stored"_qs);
    sqlite3 *locker = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(file).constData(), &locker), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(locker, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    LogCapture log;
    for (const QString &name : {u"a"_qs, u"b"_qs, u"c"_qs})
        insert(database, name);
    EXPECT_TRUE(log.contains(u"error database is locked"_qs));
    EXPECT_FALSE(database.deleteRows(PersistenceType::events, {}, true));
    EXPECT_EQ(database.droppedRows(), 0);
    insert(database, u"d"_qs);
    insert(database, u"e"_qs);
    sqlite3_close(locker);
    EXPECT_TRUE(database.commit());
    EXPECT_TRUE(log.lines().filter(u"Deleted database file"_qs).isEmpty());
    EXPECT_EQ(names(database), (QStringList{u"stored"_qs, u"c"_qs, u"d"_qs, u"e"_qs}));
    EXPECT_EQ(database.droppedRows(), 2) << "of those in memory, beyond the limit";
    EXPECT_EQ(log.lines().filter(u"the oldest records are being dropped"_qs).size(), 1);
}

TEST_F(Store, TheOldestRowsBeyondTheLimitsAreDropped)
{
    constexpr int maxRows = 100;
    MPDB::Surroundings limited = surroundings();
    limited.limits.maxRows = maxRows;
    {
        MPDB database(u"ab12cd"_qs, limited);
        database.setGrouping(true);
        for (int i = 0; i < 1000; ++i) {
            insert(database, QString::number(i));
            if (i % 10 == 0)
                database.commit();
        }
        database.commit();
        const QStringList kept = names(database);
        EXPECT_GE(kept.size(), maxRows);
        EXPECT_LE(kept.size(), maxRows + maxRows / 4);
        EXPECT_EQ(kept.constLast(), u"999"_qs);
        EXPECT_EQ(kept.constFirst(), QString::number(1000 - kept.size()));
        EXPECT_EQ(database.droppedRows(), 1000 - kept.size());
    }
    constexpr qint64 maxBytes = 400'000;
    limited.limits.maxRows = 1'000'000;
    limited.limits.maxBytes = maxBytes;
    MPDB database(u"ab12cd"_qs, limited);
    database.setGrouping(true);
    for (int i = 0; i < 2000; ++i)
        insert(database, QString(2000, u'x'));
    database.commit();
    const qint64 left = count().toLongLong() * 2000;
    EXPECT_LT(left, maxBytes + 800'000);
    EXPECT_GT(left, maxBytes / 4);
}

TEST_F(Store, TheFileShrinksOnceItsRowsAreGone)
{
    MPDB database(u"ab12cd"_qs, surroundings());
    database.setGrouping(true);
    for (int i = 0; i < 1500; ++i)
        insert(database, QString(2000, u'x'));
    insert(database, u"last"_qs);
    database.commit();
    database.shrink();
    const auto size = [&] { return QFileInfo(file).size() + QFileInfo(file + u"-wal"_qs).size(); };
    EXPECT_GT(size(), 3'000'000);
    query(file, u"DELETE FROM %1 WHERE id <= 1500"_qs.arg(table));
    database.shrink();
    EXPECT_LT(size(), 200'000);
    EXPECT_EQ(names(database), QStringList{u"last"_qs});
}

TEST_F(Store, WithoutAUsableFolderOrTokenOperationsOnlyLog)
{
    LogCapture log;
    QFile notAFolder(sandbox.folder.filePath(u"file"_qs));
    ASSERT_TRUE(notAFolder.open(QIODevice::WriteOnly));
    MPDB::Surroundings unusable = surroundings();
    unusable.folder = notAFolder.fileName();
    MPDB::Surroundings none = surroundings();
    none.folder.reset();
    MPDB inAFile(u"t"_qs, unusable);
    MPDB nowhere(u"t"_qs, none);
    MPDB unnamed(u"-_-"_qs, surroundings());
    for (MPDB *database : {&inAFile, &nowhere, &unnamed}) {
        database->insertRow(PersistenceType::events, "{}");
        database->deleteRows(PersistenceType::events, {1});
        database->updateRowsFlag(PersistenceType::people, false);
        EXPECT_TRUE(database->readRows(PersistenceType::events, 1).isEmpty());
    }
    EXPECT_EQ(
        log.lines().count(u"error Project token must not be empty. Database cannot be opened."_qs),
        5);
    // A folder that is merely missing is made.
    MPDB::Surroundings missing = surroundings();
    missing.folder = sandbox.folder.filePath(u"a/b"_qs);
    MPDB made(u"t"_qs, missing);
    made.insertRow(PersistenceType::events, "{}");
    EXPECT_EQ(made.readRows(PersistenceType::events, 1).size(), 1);
}
