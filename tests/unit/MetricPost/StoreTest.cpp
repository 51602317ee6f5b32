// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "StoreFixture.h"

#include "KeyedArchive.h"
#include "MetricPostPersistence.h"
#include "SettingsUserDefaults.h"

#include <QDir>

using namespace metricpost;
using namespace metricpost::test;

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
    for (int i = 0; i < 50; ++i) {
        const QString broken = i % 2 == 0 ? u"NULL"_qs : u"'[broken'"_qs;
        query(file, u"INSERT INTO %1(data,time,flag) VALUES(%2,5,0)"_qs.arg(table, broken));
    }
    LogCapture log;
    EXPECT_EQ(ids(database.readRows(PersistenceType::events, 2)), (QList<qint64>{2, 3}))
        << "what cannot be decoded holds up nothing";
    EXPECT_EQ(count(), u"3"_qs);
    EXPECT_TRUE(log.contains(u"error No blob found in data column for row in "_qs + table));
    EXPECT_TRUE(log.contains(u"info Successfully read 2 from table "_qs + table));
    EXPECT_EQ(log.lines().filter(u"Deleted rows that cannot be decoded"_qs).size(), 1);
    EXPECT_EQ(ids(database.readRows(PersistenceType::events, MPDB::allRows)),
              (QList<qint64>{2, 3, 1}));
    database.deleteRows(PersistenceType::events, {1, 3});
    EXPECT_EQ(
        query(file, u"SELECT id, time, flag, typeof(data) FROM %1 WHERE time > 6"_qs.arg(table)),
        QStringList{u"2|10.0|0|blob"_qs});
    database.deleteRows(PersistenceType::events, {77}, true);
    EXPECT_EQ(query(file, u"SELECT count(*) FROM "_qs + table), QStringList{u"0"_qs});
}

TEST_F(Store, GroupedRowsAreCommittedTogether)
{
    MPDB database(u"ab12cd"_qs, surroundings());
    database.setGrouping(true);
    insert(database, u"a"_qs);
    database.insertRow(PersistenceType::people, "{}");
    insert(database, u"b"_qs);
    EXPECT_EQ(count(), u"0"_qs);
    EXPECT_TRUE(database.commit());
    EXPECT_EQ(count(), u"2"_qs);
    EXPECT_EQ(database.readRows(PersistenceType::people, 1).size(), 1);
    insert(database, u"c"_qs);
    EXPECT_EQ(names(database), (QStringList{u"a"_qs, u"b"_qs, u"c"_qs}));
    insert(database, u"d"_qs);
    database.deleteRows(PersistenceType::events, {}, true);
    EXPECT_EQ(count(), u"0"_qs) << "in the order of the calls";
    for (std::size_t i = 0; i < MPDB::maxRowsInTransaction + 7; ++i)
        insert(database, u"e"_qs);
    EXPECT_EQ(count(), QString::number(MPDB::maxRowsInTransaction));
    database.close();
    EXPECT_FALSE(database.commit());
    EXPECT_TRUE(database.commit());
    EXPECT_EQ(count(), QString::number(MPDB::maxRowsInTransaction + 7));
}

TEST_F(Store, RowsThatAreSetAsideAreNotReadAgain)
{
    MPDB database(u"ab12cd"_qs, surroundings());
    for (const QString &name : {u"a"_qs, u"b"_qs, u"c"_qs})
        insert(database, name);
    EXPECT_TRUE(database.setAside(PersistenceType::events, {1, 2}));
    EXPECT_EQ(names(database), QStringList{u"c"_qs});
    database.updateRowsFlag(PersistenceType::events, false);
    database.updateRowsFlag(PersistenceType::events, true);
    EXPECT_EQ(database.readRows(PersistenceType::events, 9, true).size(), 1);
}

TEST_F(Store, FlagsKeepProfilesOfUnknownUsersBack)
{
    MetricPostPersistence persistence(u"ab12cd"_qs, sandbox.storeSurroundings());
    MetricPostPersistence::saveIdentity({u"me"_qs, {}, {}, {}, {}, {}}, u"ab12cd"_qs,
                                        *sandbox.defaults);
    persistence.saveEntity({{u"$distinct_id"_qs, u"old"_qs}}, PersistenceType::people, true);
    EXPECT_TRUE(persistence.loadEntitiesInBatch(PersistenceType::people).isEmpty());
    persistence.identifyPeople();
    const auto people = persistence.loadEntitiesInBatch(PersistenceType::people);
    ASSERT_EQ(people.size(), 1);
    EXPECT_EQ(textAt(people[0], {u"$distinct_id"_qs}), u"me"_qs);

    // Automatic events stay behind when they are not wanted, and hold up no others.
    for (const QString &name : {u"$ae_1"_qs, u"$ae_2"_qs, u"$ae_3"_qs, u"x"_qs, u"y"_qs})
        persistence.saveEntity({{u"event"_qs, name}}, PersistenceType::events);
    const auto load = [&](bool exclude) {
        return persistence.loadEntitiesInBatch(PersistenceType::events, 1, false, exclude);
    };
    ASSERT_EQ(load(true).size(), 1);
    EXPECT_EQ(textAt(load(true)[0], {u"event"_qs}), u"x"_qs);
    EXPECT_EQ(textAt(load(false)[0], {u"event"_qs}), u"$ae_1"_qs);
    persistence.resetEntities();
    EXPECT_TRUE(persistence.loadEntitiesInBatch(PersistenceType::people).isEmpty());
}

TEST_F(Store, DefaultsSeeWhatAnotherProcessWrites)
{
    const QString path = sandbox.folder.filePath(u"shared.conf"_qs);
    SettingsUserDefaults one(path);
    SettingsUserDefaults other(path);
    EXPECT_FALSE(other.value(u"k"_qs).isValid());
    one.setValues({{u"k"_qs, 1}});
    EXPECT_EQ(other.value(u"k"_qs).toInt(), 1);
    other.setValuesIfAbsent(u"k"_qs, {{u"k"_qs, 2}, {u"l"_qs, 2}});
    EXPECT_EQ(one.value(u"k"_qs).toInt(), 1);
    EXPECT_FALSE(one.value(u"l"_qs).isValid());
    other.setValuesIfAbsent(u"l"_qs, {{u"l"_qs, 3}});
    EXPECT_EQ(one.value(u"l"_qs).toInt(), 3);
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
