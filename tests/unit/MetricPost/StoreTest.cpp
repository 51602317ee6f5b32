// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "KeyedArchive.h"
#include "MPDB.h"
#include "MetricPostPersistence.h"
#include "SettingsUserDefaults.h"
#include "TestSupport.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace metricpost;
using namespace metricpost::test;

namespace
{

const QString table = u"metricpost_ab12cd_events"_qs;

struct Store : testing::Test {
    MPDB::Surroundings surroundings() const
    {
        return {sandbox.folder.path(), [clock = sandbox.now] { return clock->load(); }, {}};
    }
    QList<qint64> ids(const QList<Properties> &rows) const
    {
        QList<qint64> result;
        for (const Properties &row : rows)
            result.append(*row[u"id"_qs].get<qint64>());
        return result;
    }

    Sandbox sandbox;
    const QString file = sandbox.databasePath(u"ab12cd"_qs);
};

} // namespace

TEST_F(Store, NamesItsFileTablesAndIndexesByTheTokensLettersAndDigits)
{
    const MPDB database(u"ab-12_cd "_qs, surroundings());
    const QStringList schema = query(file, u"SELECT sql FROM sqlite_master WHERE sql NOT NULL AND "
                                           u"name NOT LIKE 'sqlite%' ORDER BY rowid"_qs);
    EXPECT_EQ(schema.value(0), u"CREATE TABLE metricpost_ab12cd_events(id integer primary key "
                               u"autoincrement,data blob,time real,flag integer)"_qs);
    EXPECT_EQ(schema.value(1), u"CREATE INDEX idx_metricpost_ab12cd_events_time ON "
                               u"metricpost_ab12cd_events (time)"_qs);
    EXPECT_EQ(schema.size(), 6);
    EXPECT_EQ(query(file, u"PRAGMA journal_mode"_qs), QStringList{u"wal"_qs});
    const MPDB unicode(u"Жé-7"_qs, surroundings());
    EXPECT_EQ(unicode.apiToken(), u"Жé7"_qs);
    EXPECT_TRUE(QFile::exists(sandbox.databasePath(u"Жé7"_qs)));
}

TEST_F(Store, FilesAreTheirOwnersAlone)
{
    const auto ownerOnly = [](const QString &path) {
        return (QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser)) ==
               (QFile::ReadOwner | QFile::WriteOwner);
    };
    QFile earlier(file);
    ASSERT_TRUE(earlier.open(QIODevice::WriteOnly));
    earlier.close();
    MPDB database(u"ab12cd"_qs, surroundings());
    database.insertRow(PersistenceType::events, "{}");
    EXPECT_TRUE(ownerOnly(file));
    EXPECT_TRUE(ownerOnly(file + u"-wal"_qs));
    EXPECT_TRUE(ownerOnly(file + u"-shm"_qs));
    SettingsUserDefaults suite(sandbox.folder.filePath(u"new/suite.conf"_qs));
    suite.setValues({{u"k"_qs, true}});
    suite.setValues({{u"k"_qs, false}});
    EXPECT_TRUE(ownerOnly(sandbox.folder.filePath(u"new/suite.conf"_qs)));
}

TEST_F(Store, ReadsInTheOrderOfTimeUpToALimitAndDeletesByIdentity)
{
    MPDB database(u"ab12cd"_qs, surroundings());
    for (const double time : {30.0, 10.0, 20.0}) {
        *sandbox.now = time;
        database.insertRow(PersistenceType::events, "{\"t\":1}");
    }
    query(file, u"INSERT INTO %1(data,time,flag) VALUES(NULL,5,0)"_qs.arg(table));
    query(file, u"INSERT INTO %1(data,time,flag) VALUES('[broken',6,0)"_qs.arg(table));
    LogCapture log;
    EXPECT_EQ(ids(database.readRows(PersistenceType::events, MPDB::allRows)),
              (QList<qint64>{2, 3, 1}));
    EXPECT_TRUE(log.contains(u"error No blob found in data column for row in "_qs + table));
    EXPECT_TRUE(log.contains(u"info Successfully read 3 from table "_qs + table));
    EXPECT_EQ(ids(database.readRows(PersistenceType::events, 3)), (QList<qint64>{2}));
    database.deleteRows(PersistenceType::events, {1, 3});
    EXPECT_EQ(
        query(file, u"SELECT id, time, flag, typeof(data) FROM %1 WHERE time > 6"_qs.arg(table)),
        QStringList{u"2|10.0|0|blob"_qs});
    database.deleteRows(PersistenceType::events, {77}, true);
    EXPECT_EQ(query(file, u"SELECT count(*) FROM "_qs + table), QStringList{u"0"_qs});
}

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

TEST_F(Store, DamageInsideTheFileIsLoggedAndGoneAfterAFailedWrite)
{
    {
        MPDB database(u"ab12cd"_qs, surroundings());
        for (int i = 0; i < 100; ++i)
            database.insertRow(PersistenceType::events,
                               "{\"t\":\"" + QByteArray(2000, 'x') + "\"}");
    }
    {
        // The first pages hold the schema; what follows are rows and the index.
        constexpr int intact = 10 * 4096;
        QFile damaged(file);
        ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
        ASSERT_GT(damaged.size(), 2 * intact);
        damaged.seek(intact);
        damaged.write(QByteArray(damaged.size() - intact, '\xff'));
    }
    MPDB database(u"ab12cd"_qs, surroundings());
    LogCapture log;
    EXPECT_LT(database.readRows(PersistenceType::events, MPDB::allRows).size(), 100);
    EXPECT_TRUE(log.contains(u"error database disk image is malformed"_qs));
    database.deleteRows(PersistenceType::events, {}, true);
    database.insertRow(PersistenceType::events, "{}");
    EXPECT_EQ(database.readRows(PersistenceType::events, MPDB::allRows).size(), 1);
    EXPECT_EQ(query(file, u"PRAGMA integrity_check"_qs), QStringList{u"ok"_qs});
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

TEST_F(Store, SmallValuesStandUnderTheirKeysAndAreDroppedWhenDamaged)
{
    UserDefaults &suite = *sandbox.defaults;
    const QString name = u"tok"_qs;
    const MetricPostIdentity identity{u"d"_qs, {}, u"a"_qs, u"u"_qs, {}, true};
    MetricPostPersistence::saveIdentity(identity, name, suite);
    MetricPostPersistence::saveSuperProperties({{u"big"_qs, ~quint64(0)}}, name, suite);
    MetricPostPersistence::saveIdentity(identity, u"other"_qs, suite);
    EXPECT_EQ(suite.value(u"metricpost-tok-MPDistinctID"_qs).toString(), u"d"_qs);
    EXPECT_EQ(MetricPostPersistence::loadIdentity(name, suite), identity);
    EXPECT_TRUE(
        MetricPostPersistence::loadSuperProperties(name, suite)[u"big"_qs].equals(~quint64(0)));

    LogCapture log;
    MetricPostPersistence::deleteMPUserDefaultsData(name, suite);
    EXPECT_EQ(MetricPostPersistence::loadIdentity(name, suite), MetricPostIdentity());
    EXPECT_TRUE(MetricPostPersistence::loadSuperProperties(name, suite).isEmpty());
    EXPECT_EQ(MetricPostPersistence::loadIdentity(u"other"_qs, suite), identity);
    EXPECT_TRUE(log.lines().isEmpty());
    suite.setValues({{u"metricpost-other-timedEvents"_qs, QByteArray("not ours")}});
    EXPECT_TRUE(MetricPostPersistence::loadTimedEvents(u"other"_qs, suite).isEmpty());
    EXPECT_EQ(log.lines(), QStringList{u"error Failed to unarchive timed events"_qs});
}

TEST_F(Store, LegacyFilesMoveIntoTheDatabaseAndTheDefaultsOnce)
{
    const auto folder = sandbox.environment().legacyArchiveFolder;
    const QDir archive(*folder);
    ASSERT_TRUE(archive.mkpath(u"."_qs));
    const auto put = [&](const QString &kind, const QByteArray &bytes) {
        QFile target(archive.filePath(u"metricpost-ab12cd-"_qs + kind));
        ASSERT_TRUE(target.open(QIODevice::WriteOnly));
        target.write(bytes);
    };
    MetricPostPersistence persistence(u"ab12cd"_qs, sandbox.storeSurroundings());
    EXPECT_FALSE(MetricPostPersistence::needMigration(u"ab12cd"_qs, folder));
    put(u"events"_qs, *KeyedArchive::archive(ValueList{Properties{{u"event"_qs, u"first"_qs}},
                                                       Properties{{u"event"_qs, u"second"_qs}}}));
    put(u"people"_qs, "damaged");
    put(u"optOutStatus"_qs, *KeyedArchive::archive(false));
    put(u"properties"_qs,
        *KeyedArchive::archive(Properties{{u"distinctId"_qs, u"who"_qs},
                                          {u"superProperties"_qs, Properties{{u"s"_qs, 1}}},
                                          {u"timedEvents"_qs, Properties{{u"t"_qs, 2.0}}}}));
    EXPECT_TRUE(MetricPostPersistence::needMigration(u"ab12cd"_qs, folder));
    LogCapture log;
    persistence.migrate();
    EXPECT_TRUE(log.contains(u"error can't unarchive file"_qs));
    const auto events = persistence.loadEntitiesInBatch(PersistenceType::events);
    ASSERT_EQ(events.size(), 2);
    EXPECT_EQ(textAt(events[0], {u"event"_qs}), u"first"_qs);
    const UserDefaults &suite = *sandbox.defaults;
    EXPECT_EQ(MetricPostPersistence::loadIdentity(u"ab12cd"_qs, suite).distinctID, u"who"_qs);
    EXPECT_EQ(MetricPostPersistence::loadSuperProperties(u"ab12cd"_qs, suite).size(), 1);
    EXPECT_EQ(MetricPostPersistence::loadTimedEvents(u"ab12cd"_qs, suite).size(), 1);
    EXPECT_EQ(MetricPostPersistence::loadOptOutStatusFlag(u"ab12cd"_qs, suite), false);
    EXPECT_FALSE(MetricPostPersistence::needMigration(u"ab12cd"_qs, folder));
    persistence.migrate();
    EXPECT_EQ(persistence.loadEntitiesInBatch(PersistenceType::events).size(), 2);
}
