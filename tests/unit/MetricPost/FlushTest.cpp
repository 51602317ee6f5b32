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
    void flushSuccess(FlushType, const QList<qint32> &ids) override { delivered.append(ids); }
    QList<QList<qint32>> delivered;
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
    for (const char *unusable : {"soon", "nan", "inf", "Wed, 21 Oct 2026 07:28:00 GMT"})
        EXPECT_EQ(waitAfter(200, unusable), 0) << unusable;
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
