// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MPDB.h"
#include "MetricPost/MetricPostInstance.h"
#include "TestSupport.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

#include <gtest/gtest.h>

using namespace metricpost;
using namespace metricpost::test;

namespace
{

constexpr int processLimitMilliseconds = 60'000;

struct Survival : testing::Test {
    MPDB open() const
    {
        return MPDB(u"tok"_qs, {.folder = sandbox.folder.path(), .now = [] { return 1.0; }});
    }
    void start(QProcess &child, const QStringList &arguments) const
    {
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QStringLiteral(METRICPOST_CHILD), arguments);
        ASSERT_TRUE(child.waitForStarted(processLimitMilliseconds));
    }
    std::unique_ptr<MetricPostInstance> instanceWithAnEvent() const
    {
        MetricPostOptions options;
        options.token = u"tok"_qs;
        auto instance = std::make_unique<MetricPostInstance>(options, sandbox.environment());
        instance->track(u"before"_qs);
        instance->waitUntilStored();
        return instance;
    }
    /// Makes another process hold the store's lock.
    void lock(QProcess &child, const QString &milliseconds) const
    {
        start(child, {u"lock"_qs, sandbox.databasePath(u"tok"_qs), milliseconds});
        ASSERT_TRUE(child.waitForReadyRead(processLimitMilliseconds));
    }

    Sandbox sandbox;
};

} // namespace

TEST_F(Survival, KillingTheProcessLosesNoCommittedRowAndDoublesNone)
{
    constexpr int rounds = 100;
    qsizetype committedInAll = 0;
    for (int round = 0; round < rounds; ++round) {
        QProcess child;
        start(child, {u"track"_qs, sandbox.folder.path(), u"tok"_qs});
        ASSERT_TRUE(child.waitForReadyRead(processLimitMilliseconds));
        QThread::usleep(QRandomGenerator::global()->bounded(20'000));
        child.kill();
        ASSERT_TRUE(child.waitForFinished(processLimitMilliseconds));
        const qsizetype committed = child.readAllStandardOutput().size();
        committedInAll += committed;

        // Events are named 0, 1, 2, … in the order in which they were tracked; only those of the
        // last group may have been stored without their dots.
        MPDB database = open();
        const QList<Properties> rows = database.readRows(PersistenceType::events, MPDB::allRows);
        ASSERT_GE(rows.size(), committed) << "round " << round;
        ASSERT_LE(rows.size(), committed + 16) << "round " << round;
        for (qsizetype i = 0; i < rows.size(); ++i)
            ASSERT_EQ(textAt(rows[i], {u"event"_qs}), QString::number(i)) << "round " << round;
        ASSERT_EQ(query(*database.path(), u"PRAGMA integrity_check"_qs), QStringList{u"ok"_qs});
        database.deleteRows(PersistenceType::events, {}, true);
    }
    EXPECT_GT(committedInAll, rounds);
    RecordProperty("committed", int(committedInAll));
}

// The thread sanitizer records nothing more of a thread that has started a process beside others,
// and then takes what the others read for unordered.
#ifndef __SANITIZE_THREAD__
TEST_F(Survival, AnotherProcesssLockIsWaitedFor)
{
    auto instance = instanceWithAnEvent();
    QProcess child;
    lock(child, u"700"_qs);
    instance->track(u"meanwhile"_qs);
    instance->waitUntilStored();
    ASSERT_TRUE(child.waitForFinished(processLimitMilliseconds));
    instance.reset();
    EXPECT_EQ(sandbox.storedEvents(u"tok"_qs), 2);
}
#endif

TEST_F(Survival, EndingWhileAnotherProcessHoldsTheLockKeepsTheFile)
{
    QProcess child;
    {
        const auto instance = instanceWithAnEvent();
        lock(child, u"600000"_qs);
        instance->track(u"blocked"_qs);
        QElapsedTimer timer;
        timer.start();
        instance->shutdown(std::chrono::milliseconds(200));
        EXPECT_LT(timer.elapsed(), processLimitMilliseconds / 2);
    }
    child.kill();
    ASSERT_TRUE(child.waitForFinished(processLimitMilliseconds));
    EXPECT_EQ(sandbox.storedEvents(u"tok"_qs), 1);
}

TEST_F(Survival, AFullDiskLosesNothing)
{
    QProcess child;
    start(child, {u"starve"_qs, sandbox.folder.path(), u"tok"_qs});
    ASSERT_TRUE(child.waitForFinished(processLimitMilliseconds));
    EXPECT_EQ(child.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(child.exitCode(), 0);
    MPDB database = open();
    QStringList names;
    for (const Properties &row : database.readRows(PersistenceType::events, MPDB::allRows))
        names.append(textAt(row, {u"event"_qs}));
    QStringList expected;
    for (int number = 0; number < 300; ++number)
        expected.append(QString::number(number));
    EXPECT_EQ(names, expected << u"fed"_qs);
    EXPECT_EQ(query(*database.path(), u"PRAGMA integrity_check"_qs), QStringList{u"ok"_qs});
}

TEST_F(Survival, WithoutAnApplicationItStoresAndSaysOnceWhatItCannotDo)
{
    QProcess child;
    child.start(QStringLiteral(METRICPOST_CHILD), {u"bare"_qs, sandbox.folder.path(), u"tok"_qs});
    ASSERT_TRUE(child.waitForFinished(processLimitMilliseconds));
    EXPECT_EQ(child.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(child.exitCode(), 0);
    EXPECT_EQ(child.readAllStandardError().count("without a QCoreApplication"), 1);
    EXPECT_EQ(sandbox.storedEvents(u"tok"_qs), 1);
}
