// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "InstanceFixture.h"

#include "FileLock.h"
#include "LoopbackServer.h"
#include "MetricPostManager.h"
#include "QtHTTPTransport.h"
#include "SettingsUserDefaults.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSet>
#include <QThread>

#include <atomic>
#include <mutex>
#include <vector>

using namespace metricpost;
using namespace metricpost::test;

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

TEST_F(Instances, OptingOutStopsAnUploadAndEveryProcess)
{
    const auto instance = make();
    MetricPostInstance other(options(u"tok"_qs), sandbox.otherProcess());
    int requests = 0;
    sandbox.transport->answerRequests([&](const URLRequest &) {
        if (++requests == 2)
            instance->optOutTracking();
        return answer(200, "1");
    });
    for (int i = 0; i < 500; ++i)
        instance->track(u"e"_qs);
    flushAndWait(*instance, true);
    EXPECT_EQ(requests, 2);
    EXPECT_EQ(stored(), 0);
    other.track(u"other"_qs);
    other.waitUntilStored();
    EXPECT_TRUE(other.hasOptedOutTracking());
    EXPECT_EQ(stored(), 0);
}

TEST_F(Instances, TwoProcessesHaveOneIdentityAndSendEachRowOnce)
{
    const auto slow = [](std::vector<QString> &names, std::mutex &mutex) {
        return [&](const URLRequest &request) {
            QThread::msleep(5);
            const std::lock_guard lock(mutex);
            for (const Properties &record : recordsOf(*request.body))
                names.push_back(textAt(record, {u"event"_qs}));
            return answer(200, "1");
        };
    };
    std::mutex mutex;
    std::vector<QString> names;
    Environment environment = sandbox.otherProcess();
    sandbox.transport->answerRequests(slow(names, mutex));
    static_cast<FakeTransport &>(*environment.transport).answerRequests(slow(names, mutex));
    const auto one = make();
    MetricPostInstance other(options(u"tok"_qs), environment);
    one->waitUntilStored();
    other.waitUntilStored();
    EXPECT_EQ(one->distinctId(), other.distinctId());
    EXPECT_EQ(make()->distinctId(), one->distinctId());

    constexpr int count = 300;
    for (int i = 0; i < count; ++i)
        (i % 2 == 0 ? *one : other).track(QString::number(i));
    std::atomic<int> done = 0;
    one->flush(true, [&] { ++done; });
    other.flush(true, [&] { ++done; });
    ASSERT_TRUE(waitUntil([&] { return done == 2; }));
    EXPECT_EQ(names.size(), std::size_t(count));
    EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), count);
}

TEST_F(Instances, AFullFlushTakesTheMemoryOfABatch)
{
    const auto instance = make();
    int received = 0;
    sandbox.transport->answerRequests([&](const URLRequest &request) {
        received += int(request.body->count("\"id\":"));
        return answer(200, "1");
    });
    instance->track(u"one"_qs);
    instance->waitUntilStored();
#ifdef __SANITIZE_THREAD__
    constexpr int count = 160; // it takes 10 times as long
#else
    constexpr int count = 1'600;
#endif
    query(sandbox.databasePath(u"tok"_qs),
          u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) INSERT "
          "INTO metricpost_tok_events(data,time,flag) SELECT CAST('{\"t\":\"' || "
          "hex(zeroblob(5000)) || '\"}' AS BLOB), i, 0 FROM n"_qs.arg(count));
    const auto peakKilobytes = [] {
        QFile status(u"/proc/self/status"_qs);
        EXPECT_TRUE(status.open(QIODevice::ReadOnly));
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:"))
                return line.mid(6).replace("kB", "").trimmed().toLongLong();
        }
        return 0LL;
    };
    QFile reset(u"/proc/self/clear_refs"_qs);
    ASSERT_TRUE(reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    reset.write("5");
    [[maybe_unused]] const qint64 before = peakKilobytes();
    flushAndWait(*instance, true);
    EXPECT_EQ(received, count + 1);
    EXPECT_EQ(stored(), 0);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_LT(peakKilobytes() - before, 24 * 1024);
#endif
}

TEST_F(Instances, AnEventAloneIsStoredAtOnceAndManyAreAtTheEnd)
{
    constexpr int count = 3'000;
    {
        const auto instance = make();
        instance->waitUntilStored();
        instance->track(u"alone"_qs);
        EXPECT_TRUE(waitUntil([&] { return stored() == 1; }));
        for (int i = 1; i < count; ++i)
            instance->track(u"e"_qs);
        EXPECT_TRUE(instance->shutdown(std::chrono::minutes(2)));
        EXPECT_EQ(instance->droppedRecords(), 0);
    }
    EXPECT_EQ(stored(), count);
}

TEST_F(Instances, TheLastReferenceMayGoOnTheInstancesOwnThread)
{
    struct Dropping : ProxyServerDelegate {
        ProxyServerResource resourceForProxyServer(const QString &) override
        {
            held.reset();
            return {};
        }
        std::shared_ptr<MetricPostInstance> held;
    };
    const auto delegate = std::make_shared<Dropping>();
    MetricPostOptions dropping = options(u"tok"_qs);
    dropping.proxyServerConfig = ProxyServerConfig{u"http://proxy.test"_qs, delegate};
    {
        MetricPostManager manager(sandbox.environment());
        delegate->held = manager.initialize(dropping);
        MetricPostInstance *const instance = delegate->held.get();
        instance->track(u"e"_qs);
        manager.removeInstance(u"tok"_qs);
        instance->flush();
        EXPECT_TRUE(waitUntil([&] { return !sandbox.transport->requests().isEmpty(); }));
    }
    EXPECT_EQ(sandbox.transport->requests()[0].url.host(), u"proxy.test"_qs);
    // The work goes on to its end; then the file has no user any more.
    FileLock inUse(sandbox.databasePath(u"tok"_qs) + u"-inuse"_qs);
    EXPECT_TRUE(waitUntil([&] { return inUse.tryLock(FileLock::Mode::Exclusive); }));
    EXPECT_EQ(stored(), 0);
}

TEST_F(Instances, AHangingServerHoldsUpNeitherCallersNorTheEnd)
{
    LoopbackServer server(LoopbackServer::always({}));
    Environment environment = sandbox.environment();
    environment.transport = std::make_shared<QtHTTPTransport>();
    QElapsedTimer timer;
    timer.start();
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
        instance.shutdown(std::chrono::seconds(2));
        instance.track(u"too late"_qs);
    }
    EXPECT_LT(timer.elapsed(), 60'000) << "an answer is waited for twice as long";
    EXPECT_EQ(server.requests().size(), 1);
    // A later run sends what this one could not.
    const auto next = make();
    flushAndWait(*next, true);
    EXPECT_EQ(sentNames().size(), 101);
    EXPECT_EQ(stored(), 0);
}

TEST_F(Instances, ListensToTheApplicationBeforeItReadsWhatIsStored)
{
    struct Leaving : SettingsUserDefaults {
        using SettingsUserDefaults::SettingsUserDefaults;
        QVariant value(const QString &key) const override
        {
            if (!left.exchange(true))
                application->applicationWillResignActive();
            return SettingsUserDefaults::value(key);
        }
        std::shared_ptr<ApplicationState> application;
        mutable std::atomic<bool> left{false};
    };
    make()->track(u"earlier"_qs);
    ASSERT_EQ(stored(), 1);
    Environment environment = sandbox.environment();
    const auto leaving =
        std::make_shared<Leaving>(sandbox.folder.filePath(QStringLiteral("leaving.conf")));
    leaving->application = environment.applicationState;
    environment.userDefaults = leaving;
    const MetricPostInstance instance(options(u"tok"_qs), environment);
    EXPECT_TRUE(waitUntil([&] { return sentNames() == QStringList{u"earlier"_qs}; }));
}
