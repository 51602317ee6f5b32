// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "Flush.h"
#include "MetricPostPersistence.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace metricpost;
using namespace metricpost::test;

namespace
{

struct Delegate : FlushDelegate {
    void flush(bool, std::function<void()>) override {}
    bool flushSuccess(FlushType, const QList<qint32> &ids) override
    {
        delivered.append(ids);
        return removes;
    }
    void flushRefused(FlushType, const QList<qint32> &ids) override { refused.append(ids); }
    bool isSendingAllowed() const override { return delivered.size() < maxDelivered; }
    QList<qint32> deliveredIds() const
    {
        QList<qint32> ids;
        for (const QList<qint32> &batch : delivered)
            ids.append(batch);
        return ids;
    }
    QList<QList<qint32>> delivered;
    QList<qint32> refused;
    bool removes = true;
    int maxDelivered = 1000;
};

QList<Properties> queueOf(int count)
{
    QList<Properties> queue;
    for (int id = 1; id <= count; ++id)
        queue.append({{u"id"_qs, id}, {u"event"_qs, u"e"_qs}});
    return queue;
}

struct Flushing : testing::Test {
    Flushing() { flush.setDelegate(&delegate); }

    bool send() { return request.sendRequest("[]", FlushType::events, true, {}, {}, false); }
    double wait() const { return request.networkRequestsAllowedAfterTime() - *sandbox.now; }

    Sandbox sandbox;
    Delegate delegate;
    Flush flush{u"http://collector.test/base"_qs, false, sandbox.requestSurroundings()};
    FlushRequest &request = flush.flushRequest();
};

} // namespace

TEST_F(Flushing, SendsBatchesInOrderUpToTheFirstFailure)
{
    sandbox.transport->answerWith([](int number) { return answer(number == 3 ? 500 : 200, "1"); });
    flush.flushQueue(queueOf(200), FlushType::people, {}, {});
    ASSERT_EQ(delegate.delivered.size(), 2);
    EXPECT_EQ(delegate.delivered[0].size(), 50);
    EXPECT_EQ(delegate.delivered[1].constFirst(), 51);
    EXPECT_EQ(sandbox.transport->requests().size(), 3);
    // Batches that cannot be removed would be sent again and again.
    sandbox.transport->answerWith([](int) { return answer(200, "1"); });
    delegate.removes = false;
    EXPECT_FALSE(flush.flushQueue(queueOf(200), FlushType::people, {}, {}));
    EXPECT_EQ(delegate.delivered.size(), 3);
    delegate.removes = true;
    // The delegate may end it before any batch.
    delegate.maxDelivered = 5;
    EXPECT_FALSE(flush.flushQueue(queueOf(200), FlushType::people, {}, {}));
    EXPECT_EQ(delegate.delivered.size(), 5);
    flush.setFlushBatchSize(0);
    EXPECT_EQ(flush.flushBatchSize(), 1);
}

TEST_F(Flushing, AnAnswerThatDoesNotComeIsGivenUp)
{
    sandbox.transport->answerWith([](int) { return std::nullopt; });
    FlushRequest hasty(u"http://collector.test"_qs, sandbox.requestSurroundings(),
                       std::chrono::milliseconds(1));
    EXPECT_FALSE(hasty.sendRequest("[]", FlushType::events, true, {}, {}, false));
    EXPECT_EQ(sandbox.transport->abandoned(), 1);
}

TEST_F(Flushing, ARefusedRecordIsFoundAndSetAside)
{
    const auto hasPoison = [](const URLRequest &sent) {
        for (const Properties &record : recordsOf(*sent.body)) {
            if (const qint64 id = *record[u"id"_qs].get<qint64>(); id == 17 || id == 18)
                return true;
        }
        return false;
    };
    for (const int status : {400, 413}) {
        delegate = Delegate();
        sandbox.transport->answerRequests(
            [&](const URLRequest &sent) { return answer(hasPoison(sent) ? status : 200, "1"); });
        EXPECT_TRUE(flush.flushQueue(queueOf(70), FlushType::events, {}, {}));
        EXPECT_EQ(delegate.refused, (QList<qint32>{17, 18}));
        QList<qint32> others;
        for (int id = 1; id <= 70; ++id) {
            if (id != 17 && id != 18)
                others.append(id);
        }
        EXPECT_EQ(delegate.deliveredIds(), others);
        EXPECT_FALSE(request.requestNotAllowed());
    }
    // Other failures say nothing about the records.
    delegate = Delegate();
    int requests = 0;
    sandbox.transport->answerRequests([&](const URLRequest &) {
        ++requests;
        return answer(404, "1");
    });
    EXPECT_FALSE(flush.flushQueue(queueOf(70), FlushType::events, {}, {}));
    EXPECT_EQ(requests, 1);
}

TEST_F(Flushing, AServerThatRefusesEverythingLosesNothing)
{
    int requests = 0;
    sandbox.transport->answerRequests([&](const URLRequest &) {
        ++requests;
        return answer(400, "");
    });
    EXPECT_FALSE(flush.flushQueue(queueOf(50), FlushType::events, {}, {}));
    EXPECT_TRUE(delegate.refused.isEmpty());
    EXPECT_LT(requests, 25);
    EXPECT_EQ(request.networkConsecutiveFailures(), 1);
    // The next attempt is the second failure, from which on the back-off holds.
    flush.flushQueue(queueOf(1), FlushType::events, {}, {});
    EXPECT_TRUE(request.requestNotAllowed());
    EXPECT_TRUE(delegate.refused.isEmpty());
    // A pause that the service asks for is kept before the halves too.
    *sandbox.now = *sandbox.now + 1000;
    requests = 0;
    sandbox.transport->answerRequests([&](const URLRequest &) {
        ++requests;
        return answer(413, "", "5");
    });
    EXPECT_FALSE(flush.flushQueue(queueOf(50), FlushType::events, {}, {}));
    EXPECT_EQ(requests, 1);
}

TEST_F(Flushing, ARequestIsBuiltAsTheServiceWantsIt)
{
    request.sendRequest("[{}]", FlushType::groups, true, {{u"X-Proxy"_qs, u"1"_qs}},
                        {{u"k"_qs, u"a+b c&d"_qs}}, true);
    const URLRequest sent = sandbox.transport->requests().constFirst();
    EXPECT_EQ(sent.url.toEncoded(), "http://collector.test/base/groups/?k=a%2Bb%20c%26d&ip=1");
    EXPECT_EQ(sent.method, "post");
    EXPECT_EQ(sent.headers, (Headers{{u"Content-Type"_qs, u"application/json"_qs},
                                     {u"Content-Encoding"_qs, u"gzip"_qs},
                                     {u"X-Proxy"_qs, u"1"_qs}}));
    LogCapture log;
    request.sendRequest("", FlushType::events, false, {}, {}, true);
    const URLRequest empty = sandbox.transport->requests().constLast();
    EXPECT_FALSE(empty.headers.contains(u"Content-Encoding"_qs));
    EXPECT_TRUE(empty.url.toString().endsWith(u"/base/track/?ip=0"));
    EXPECT_TRUE(log.contains(u"error Failed to compress data with gzip: Empty Data object cannot "
                             u"be compressed."_qs));
    EXPECT_EQ(BasePath::buildURL(u"http://host/a%20b%2Fc?d=e"_qs, u"/p/"_qs, {})->toEncoded(),
              "http://host/a%20b%2Fc/p/");
    EXPECT_FALSE(BasePath::buildURL(u"ftp://host"_qs, u"/p"_qs, {}));
    EXPECT_FALSE(BasePath::buildURL({}, u"/p"_qs, {}));
}

TEST_F(Flushing, BacksOffExponentiallyAfterTheSecondFailure)
{
    sandbox.transport->answerWith([](int) { return answer(503, ""); });
    *sandbox.random = 29;
    const QList<double> waits{0, 149, 240, 481, 600, 600};
    for (const double expected : waits) {
        EXPECT_FALSE(send());
        EXPECT_EQ(wait(), expected);
        EXPECT_EQ(request.requestNotAllowed(), expected > 0);
    }
    // Neither new records nor the passing of less than the time end it.
    *sandbox.now = *sandbox.now + 599;
    const auto before = sandbox.transport->requests().size();
    flush.flushQueue(queueOf(1), FlushType::events, {}, {});
    EXPECT_EQ(sandbox.transport->requests().size(), before);
    *sandbox.now = *sandbox.now + 1;
    sandbox.transport->answerWith([](int) { return answer(200, "1"); });
    flush.flushQueue(queueOf(1), FlushType::events, {}, {});
    EXPECT_EQ(delegate.delivered.size(), 1);
    EXPECT_EQ(request.networkConsecutiveFailures(), 0);
    EXPECT_FALSE(request.requestNotAllowed());
}

TEST_F(Flushing, HonoursRetryAfterWhateverTheResult)
{
    const auto waitAfter = [&](int status, const QByteArray &header) {
        sandbox.transport->answerWith([=](int) { return answer(status, "1", header); });
        send();
        return wait();
    };
    EXPECT_EQ(waitAfter(200, "30"), 30);
    EXPECT_EQ(waitAfter(200, " 0.5 "), 0.5);
    for (const char *unusable : {"soon", "nan", "inf", "-5", "Thu, 01 Jan 1970 00:10:00 GMT"})
        EXPECT_EQ(waitAfter(200, unusable), 0) << unusable;
    // The clock stands at 1000 s, which is 00:16:40.
    EXPECT_EQ(waitAfter(200, "Thu, 01 Jan 1970 00:17:00 GMT"), 20);
    constexpr double day = 86'400;
    EXPECT_EQ(waitAfter(200, "1e300"), day);
    EXPECT_EQ(waitAfter(200, "Wed, 21 Oct 2026 07:28:00 GMT"), day);
    EXPECT_EQ(waitAfter(429, "45"), 45);
    *sandbox.random = 0;
    EXPECT_EQ(waitAfter(429, "5"), 120);
    EXPECT_EQ(waitAfter(429, "900"), 900);
}

TEST_F(Flushing, ACancelledRequestIsGivenUpAndNoneFollows)
{
    sandbox.transport->answerWith([](int) { return std::nullopt; });
    std::thread canceller([&] {
        waitUntil([&] { return sandbox.transport->requests().size() == 1; });
        request.cancel();
    });
    EXPECT_FALSE(send());
    canceller.join();
    EXPECT_FALSE(send());
    EXPECT_EQ(sandbox.transport->requests().size(), 1);
}
