// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "InstanceFixture.h"

#include "MetricPost/MetricPost.h"
#include "MetricPost/MetricPostLogger.h"
#include "MetricPostManager.h"
#include "ProcessClock.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

using namespace metricpost;
using namespace metricpost::test;

TEST_F(Instances, TheRegistryKeepsTheFirstConfigurationAndTheLastMainInstance)
{
    MetricPostManager manager(sandbox.environment());
    EXPECT_FALSE(MetricPost::safeMainInstance(manager));
    MetricPostOptions first = options(u"one"_qs);
    first.flushInterval = Seconds(5);
    const auto one = manager.initialize(first);
    first.flushInterval = Seconds(6);
    MetricPostOptions named = options(u"one"_qs);
    named.instanceName = u"other"_qs;
    const auto other = manager.initialize(named);
    EXPECT_NE(one, other);
    EXPECT_EQ(manager.mainInstance(), other);
    EXPECT_EQ(manager.initialize(first), one);
    EXPECT_EQ(one->flushInterval(), Seconds(5));
    EXPECT_EQ(manager.mainInstance(), one);
    EXPECT_EQ(manager.getInstance(u"other"_qs), other);
    EXPECT_FALSE(manager.getInstance(u"none"_qs));
    manager.setMainInstance(u"other"_qs);
    manager.setMainInstance(u"none"_qs);
    EXPECT_EQ(MetricPost::mainInstance(manager), other);
    manager.removeInstance(u"other"_qs);
    EXPECT_FALSE(manager.mainInstance());
    EXPECT_DEATH(MetricPost::mainInstance(manager),
                 "You have to call initialize\\(token:trackAutomaticEvents:\\) before calling the "
                 "main instance, or define a new main instance if removing the main one");
}

TEST_F(Instances, TheFirstIdentityIsADeviceAndStays)
{
    QString distinctId;
    {
        const auto instance = make();
        distinctId = instance->distinctId();
        EXPECT_EQ(distinctId, u"$device:"_qs + *instance->anonymousId());
        EXPECT_EQ(distinctId.size(), 8 + 36);
    }
    EXPECT_EQ(make()->distinctId(), distinctId);
    MetricPostOptions unique = options(u"unique"_qs);
    unique.useUniqueDistinctId = true;
    EXPECT_EQ(make(unique)->distinctId(), u"$device:d1"_qs);
    EXPECT_EQ(MetricPostInstance::addPrefixToDeviceId({}), QString());
    EXPECT_EQ(make(unique)->debugDescription(),
              u"MetricPost(\n    Token: unique,\n    Distinct Id: $device:d1\n)"_qs);
}

TEST_F(Instances, TimedEventsAndSuperPropertiesOutliveTheInstance)
{
    {
        const auto instance = make();
        instance->time(u"t"_qs);
        instance->time(u"u"_qs);
        instance->clearTimedEvent(u"u"_qs);
        instance->registerSuperProperties({{u"a"_qs, 1}, {u"b"_qs, 2}});
        instance->registerSuperPropertiesOnce({{u"a"_qs, 9}, {u"c"_qs, 3}});
        instance->unregisterSuperProperty(u"b"_qs);
    }
    const auto instance = make();
    EXPECT_EQ(instance->timedEvents().keys(), QStringList{u"t"_qs});
    EXPECT_EQ(MetricPostType(instance->superProperties()).description(),
              u"[\"a\": 1, \"c\": 3]"_qs);
    instance->clearTimedEvents();
    instance->clearSuperProperties();
    instance->waitUntilStored();
    EXPECT_TRUE(instance->timedEvents().isEmpty());
    EXPECT_TRUE(instance->superProperties().isEmpty());
}

TEST_F(Instances, EventsAreStoredSentInOrderAndDeleted)
{
    const auto instance = make();
    instance->registerSuperProperties({{u"plan"_qs, u"free"_qs}});
    instance->time(u"e1"_qs);
    for (int i = 0; i < 120; ++i) {
        *sandbox.now = 1001 + i;
        instance->track(u"e%1"_qs.arg(i));
    }
    instance->waitUntilStored();
    EXPECT_EQ(stored(), 120);
    flushAndWait(*instance);
    EXPECT_EQ(stored(), 70);
    const auto first = recordsOf(*sandbox.transport->requests()[0].body);
    EXPECT_EQ(textAt(first[0], {u"properties"_qs, u"plan"_qs}), u"free"_qs);
    EXPECT_EQ(textAt(first[0], {u"properties"_qs, u"time"_qs}), u"1001000"_qs);
    EXPECT_EQ(textAt(first[1], {u"properties"_qs, u"$duration"_qs}), u"2"_qs);
    flushAndWait(*instance, true);
    EXPECT_EQ(stored(), 0);
    QStringList expected;
    for (int i = 0; i < 120; ++i)
        expected.append(u"e%1"_qs.arg(i));
    EXPECT_EQ(sentNames(), expected);
}

TEST_F(Instances, OptingOutEmptiesTheStoreAndLasts)
{
    {
        const auto instance = make();
        instance->track(u"before"_qs);
        instance->waitUntilStored();
        ASSERT_EQ(stored(), 1);
        instance->optOutTracking();
        instance->waitUntilStored();
        EXPECT_EQ(stored(), 0) << "the queue goes";
        instance->track(u"after"_qs);
        instance->time(u"after"_qs);
        instance->registerSuperProperties({{u"a"_qs, 1}});
        instance->waitUntilStored();
        EXPECT_EQ(stored(), 0) << "and nothing comes";
        EXPECT_TRUE(instance->timedEvents().isEmpty());
        EXPECT_TRUE(instance->superProperties().isEmpty());
        query(sandbox.databasePath(u"tok"_qs),
              u"INSERT INTO metricpost_tok_events(data,time,flag) VALUES('{}',1,0)"_qs);
        flushAndWait(*instance);
        EXPECT_TRUE(sandbox.transport->requests().isEmpty()) << "and nothing leaves";
    }
    EXPECT_TRUE(make()->hasOptedOutTracking());
    {
        const auto instance = make();
        instance->optInTracking();
        instance->track(u"again"_qs);
        flushAndWait(*instance, true);
        EXPECT_TRUE(sentNames().contains(u"again"_qs));
    }
    MetricPostOptions byDefault = options(u"tok"_qs);
    byDefault.optOutTrackingByDefault = true;
    // A stored choice beats the default.
    EXPECT_FALSE(make(byDefault)->hasOptedOutTracking());
    byDefault.token = u"fresh"_qs;
    EXPECT_TRUE(make(byDefault)->hasOptedOutTracking());
}

TEST(ProcessClockTest, FollowsTheWallClockAndNeverRunsBackwards)
{
    double wall = 1000;
    double steady = 5;
    ProcessClock clock([&] { return wall; }, [&] { return steady; });
    EXPECT_EQ(clock.now(), 1000);
    wall = 1010;
    steady = 15;
    EXPECT_EQ(clock.now(), 1010);
    wall = 500; // set back
    steady = 17;
    EXPECT_EQ(clock.now(), 1012);
    wall = 2000; // set forward, or the computer slept
    steady = 18;
    EXPECT_EQ(clock.now(), 2000);
    const auto now = Environment::standard().now;
    const double first = now();
    EXPECT_NEAR(first, double(QDateTime::currentSecsSinceEpoch()), 3600);
    EXPECT_GE(now(), first);
}

TEST_F(Instances, DoNotTrackRecordsNothingAndIsForgottenWithTheEnvironment)
{
    sandbox.doNotTrack = true;
    {
        const auto instance = make();
        instance->track(u"e"_qs);
        instance->time(u"e"_qs);
        instance->registerSuperProperties({{u"a"_qs, 1}});
        flushAndWait(*instance);
        instance->optInTracking();
        EXPECT_TRUE(instance->hasOptedOutTracking());
    }
    EXPECT_FALSE(QFile::exists(sandbox.databasePath(u"tok"_qs)));
    EXPECT_FALSE(sandbox.defaults->value(u"metricpost-tok-MPDistinctID"_qs).isValid());
    sandbox.doNotTrack = false;
    EXPECT_FALSE(make()->hasOptedOutTracking());

    const auto standard = [](const char *value) {
        qputenv("DO_NOT_TRACK", value);
        const bool result = Environment::standard().doNotTrack;
        qunsetenv("DO_NOT_TRACK");
        return result;
    };
    EXPECT_TRUE(standard("1"));
    EXPECT_FALSE(standard("0"));
}

TEST_F(Instances, TheTimerFlushesWhileTheApplicationIsActive)
{
    MetricPostOptions often = options(u"tok"_qs);
    often.flushInterval = Seconds(0.3);
    const auto instance = make(often);
    instance->track(u"one"_qs);
    QThread::msleep(400);
    QCoreApplication::processEvents();
    EXPECT_TRUE(sandbox.transport->requests().isEmpty());
    QElapsedTimer timer;
    timer.start();
    sandbox.applicationState->applicationDidBecomeActive();
    EXPECT_TRUE(waitUntil([&] { return sentNames() == QStringList{u"one"_qs}; }));
    EXPECT_GE(timer.elapsed(), 250) << "a timer never fires early";
    sandbox.applicationState->applicationWillResignActive();
    flushAndWait(*instance);
    instance->track(u"two"_qs);
    // Going to the background flushes once more.
    sandbox.applicationState->applicationWillResignActive();
    EXPECT_TRUE(waitUntil([&] { return sentNames().size() == 2; }));
    instance->track(u"three"_qs);
    QThread::msleep(400);
    QCoreApplication::processEvents();
    EXPECT_EQ(sentNames().size(), 2);

    sandbox.applicationState->applicationDidBecomeActive();
    often.token = u"tok2"_qs;
    // An instance made while the application is active has its timer at once.
    const auto late = make(often);
    late->track(u"four"_qs);
    EXPECT_TRUE(waitUntil([&] { return sentNames().contains(u"four"_qs); }));
    late->setFlushInterval(Seconds(0));
    flushAndWait(*late);
    late->track(u"five"_qs);
    QThread::msleep(400);
    QCoreApplication::processEvents();
    EXPECT_FALSE(sentNames().contains(u"five"_qs)) << "without an interval there is no timer";
}

TEST_F(Instances, TheLoggingSwitchAddsAndRemovesThePrintSink)
{
    testing::internal::CaptureStdout();
    const auto instance = make();
    const auto other = make(options(u"other"_qs));
    instance->waitUntilStored();
    other->waitUntilStored();
    const auto own = std::make_shared<PrintLogging>();
    // Each line is printed once: no second sink joins the first, nor one of the application's.
    instance->setLoggingEnabled(true);
    other->setLoggingEnabled(true);
    other->setLoggingEnabled(false);
    // The other's switch is off for all; this one's turns them on again.
    instance->setLoggingEnabled(true);
    EXPECT_TRUE(instance->loggingEnabled());
    instance->setLoggingEnabled(false);
    MetricPostLogger::addLogging(own);
    instance->setLoggingEnabled(true);
    instance->setLoggingEnabled(false);
    MetricPostLogger::removeLogging(own);
    instance->track(u"silent"_qs);
    instance->waitUntilStored();
    const QString printed = QString::fromStdString(testing::internal::GetCapturedStdout());
    EXPECT_EQ(printed.count(u"(info) - MetricPostLogging Enabled\n"), 4);
    EXPECT_EQ(printed.count(u"(info) - MetricPostLogging Disabled\n"), 3);
    EXPECT_TRUE(printed.endsWith(u"(info) - MetricPostLogging Disabled\n"));
}
