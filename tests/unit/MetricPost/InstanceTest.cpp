// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "LoopbackServer.h"
#include "MetricPost/MetricPost.h"
#include "MetricPost/MetricPostLogger.h"
#include "MetricPostManager.h"
#include "QtHTTPTransport.h"
#include "TestSupport.h"

#include <QCoreApplication>
#include <QFile>
#include <QThread>

#include <gtest/gtest.h>

using namespace metricpost;
using namespace metricpost::test;

namespace
{

struct Instances : testing::Test {
    MetricPostOptions options(const QString &token) const
    {
        MetricPostOptions result;
        result.token = token;
        result.useGzipCompression = false;
        return result;
    }
    std::unique_ptr<MetricPostInstance> make(const MetricPostOptions &with)
    {
        return std::make_unique<MetricPostInstance>(with, sandbox.environment());
    }
    std::unique_ptr<MetricPostInstance> make() { return make(options(u"tok"_qs)); }

    QStringList sentNames() const
    {
        QStringList names;
        for (const URLRequest &request : sandbox.transport->requests()) {
            for (const Properties &record : recordsOf(*request.body))
                names.append(textAt(record, {u"event"_qs}));
        }
        return names;
    }
    int stored() const { return sandbox.storedEvents(u"tok"_qs); }

    Sandbox sandbox;
};

} // namespace

TEST_F(Instances, TheRegistryKeepsTheFirstConfigurationAndTheLastMainInstance)
{
    MetricPostManager manager(sandbox.environment());
    EXPECT_FALSE(MetricPost::safeMainInstance(manager));
    MetricPostOptions first = options(u"one"_qs);
    first.flushInterval = 5;
    const auto one = manager.initialize(first);
    first.flushInterval = 6;
    MetricPostOptions named = options(u"one"_qs);
    named.instanceName = u"other"_qs;
    const auto other = manager.initialize(named);
    EXPECT_NE(one, other);
    EXPECT_EQ(manager.mainInstance(), other);
    EXPECT_EQ(manager.initialize(first), one);
    EXPECT_EQ(one->flushInterval(), 5);
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

TEST_F(Instances, OverlappingFlushesSendNothingTwice)
{
    LoopbackServer server([](int) {
        QThread::msleep(20);
        return LoopbackServer::Answer{LoopbackServer::response(200, "1")};
    });
    Environment environment = sandbox.environment();
    environment.transport = std::make_shared<QtHTTPTransport>();
    MetricPostInstance instance(options(u"tok"_qs), environment);
    instance.setServerURL(server.url());
    QStringList expected;
    for (int i = 0; i < 30; ++i) {
        expected.append(u"e%1"_qs.arg(i));
        *sandbox.now = 1001 + i;
        instance.track(expected.constLast());
        instance.flush();
    }
    flushAndWait(instance);
    QStringList names;
    for (const QByteArray &request : server.requests()) {
        for (const Properties &record : recordsOf(bodyOf(request)))
            names.append(textAt(record, {u"event"_qs}));
    }
    EXPECT_EQ(names, expected);
}

TEST_F(Instances, OptingOutEmptiesTheStoreAndLasts)
{
    MetricPostOptions byDefault = options(u"tok"_qs);
    byDefault.optOutTrackingByDefault = true;
    {
        const auto instance = make();
        instance->track(u"before"_qs);
        instance->optOutTracking();
        instance->track(u"after"_qs);
        flushAndWait(*instance);
    }
    EXPECT_EQ(stored(), 0);
    EXPECT_TRUE(sandbox.transport->requests().isEmpty());
    EXPECT_TRUE(make()->hasOptedOutTracking());
    make()->optInTracking();
    // A stored choice beats the default.
    EXPECT_FALSE(make(byDefault)->hasOptedOutTracking());
    byDefault.token = u"fresh"_qs;
    EXPECT_TRUE(make(byDefault)->hasOptedOutTracking());
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
    often.flushInterval = 0.01;
    const auto instance = make(often);
    instance->track(u"one"_qs);
    QThread::msleep(50);
    QCoreApplication::processEvents();
    EXPECT_TRUE(sandbox.transport->requests().isEmpty());
    sandbox.applicationState->applicationDidBecomeActive();
    EXPECT_TRUE(waitUntil([&] { return sentNames() == QStringList{u"one"_qs}; }));
    sandbox.applicationState->applicationWillResignActive();
    flushAndWait(*instance);
    instance->track(u"two"_qs);
    // Going to the background flushes once more.
    sandbox.applicationState->applicationWillResignActive();
    EXPECT_TRUE(waitUntil([&] { return sentNames().size() == 2; }));
    instance->track(u"three"_qs);
    QThread::msleep(50);
    QCoreApplication::processEvents();
    EXPECT_EQ(sentNames().size(), 2);

    sandbox.applicationState->applicationDidBecomeActive();
    often.token = u"tok2"_qs;
    // An instance made while the application is active has its timer at once.
    const auto late = make(often);
    late->track(u"four"_qs);
    EXPECT_TRUE(waitUntil([&] { return sentNames().contains(u"four"_qs); }));
    late->setFlushInterval(0);
    flushAndWait(*late);
    late->track(u"five"_qs);
    QThread::msleep(50);
    QCoreApplication::processEvents();
    EXPECT_FALSE(sentNames().contains(u"five"_qs)) << "without an interval there is no timer";
}

TEST_F(Instances, AHangingServerHoldsUpNeitherCallersNorTheEnd)
{
    LoopbackServer server(LoopbackServer::always({}));
    Environment environment = sandbox.environment();
    environment.transport = std::make_shared<QtHTTPTransport>();
    {
        MetricPostInstance instance(options(u"tok"_qs), environment);
        instance.setServerURL(server.url());
        instance.track(u"first"_qs);
        instance.flush();
        ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
        for (int i = 0; i < 100; ++i)
            instance.track(u"more"_qs);
        instance.flush();
        instance.waitUntilStored();
        EXPECT_EQ(stored(), 101);
        // The server would be waited for longer.
        EXPECT_TRUE(instance.shutdown(std::chrono::seconds(50)));
        instance.track(u"too late"_qs);
    }
    EXPECT_EQ(server.requests().size(), 1);
    // A later run sends what this one could not.
    const auto next = make();
    flushAndWait(*next, true);
    EXPECT_EQ(sentNames().size(), 101);
    EXPECT_EQ(stored(), 0);
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
