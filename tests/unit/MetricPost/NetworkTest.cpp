// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "FlushRequest.h"
#include "LoopbackServer.h"
#include "QtHTTPTransport.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace metricpost;
using namespace metricpost::test;

namespace
{

using Then = LoopbackServer::Then;

struct Wire : testing::Test {
    // Every request goes the whole way, over a real connection.
    std::unique_ptr<FlushRequest>
    requestTo(const QString &url,
              std::chrono::milliseconds limit = FlushRequest::standardAnswerLimit)
    {
        FlushRequest::Surroundings surroundings = sandbox.requestSurroundings();
        surroundings.transport = transport;
        return std::make_unique<FlushRequest>(url, surroundings, limit);
    }
    static bool send(FlushRequest &request, bool gzip = false)
    {
        return request.sendRequest("[{\"a\":1}]", FlushType::events, true, {}, {}, gzip);
    }

    Sandbox sandbox;
    std::shared_ptr<QtHTTPTransport> transport = std::make_shared<QtHTTPTransport>();
};

} // namespace

TEST_F(Wire, CarriesTheMethodTheQueryTheBodyAndTheAnswersHeaders)
{
    LoopbackServer server(
        LoopbackServer::always(LoopbackServer::response(200, "1", "RETRY-AFTER: 30\r\n")));
    const auto request = requestTo(server.url());
    EXPECT_TRUE(send(*request));
    EXPECT_TRUE(send(*request, true));
    EXPECT_EQ(request->networkRequestsAllowedAfterTime(), *sandbox.now + 30);
    ASSERT_EQ(server.requests().size(), 2);
    const QByteArray plain = server.requests()[0];
    EXPECT_TRUE(plain.startsWith("POST /track/?ip=1 HTTP/1.1\r\n")) << plain.constData();
    EXPECT_TRUE(plain.contains("Content-Type: application/json\r\n"));
    EXPECT_FALSE(plain.contains("Content-Encoding"));
    EXPECT_TRUE(plain.contains("\r\nAccept-Language: *\r\n"));
    EXPECT_EQ(bodyOf(plain), "[{\"a\":1}]");
    const QByteArray compressed = server.requests()[1];
    EXPECT_TRUE(compressed.contains("Content-Encoding: gzip\r\n"));
    EXPECT_EQ(gunzip(bodyOf(compressed)), "[{\"a\":1}]");
}

TEST_F(Wire, OnlyAWhole200WithAnIntegerCountsAsSent)
{
    const struct {
        LoopbackServer::Answer answer;
        QString reason;
    } failures[] = {
        {{LoopbackServer::response(500, "1")}, u"notOKStatusCode(statusCode: 500)"_qs},
        {{LoopbackServer::response(204, "")}, u"notOKStatusCode(statusCode: 204)"_qs},
        {{LoopbackServer::response(302, "1", "Location: /elsewhere/\r\n")},
         u"notOKStatusCode(statusCode: 302)"_qs},
        {{LoopbackServer::response(401, "1", "WWW-Authenticate: Basic realm=\"x\"\r\n"),
          Then::Close},
         u"notOKStatusCode(statusCode: 401)"_qs},
        {{LoopbackServer::response(200, "<html>")}, u"parseError"_qs},
        {{LoopbackServer::response(200, "1 2")}, u"parseError"_qs},
        {{LoopbackServer::response(200, "+-1")}, u"parseError"_qs},
        {{LoopbackServer::response(200, "")}, u"noData"_qs},
        {{LoopbackServer::response(200, QByteArray(10'000'000, '1'))}, u"other("_qs},
        {{"HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\n1", Then::Close}, u"other("_qs},
        {{"HTTP/1.1 200 OK\r\nContent-Le", Then::Close}, u"other("_qs},
        {{"SMTP ready\r\n\r\n", Then::Close}, {}},
        {{"", Then::Reset}, u"other("_qs},
    };
    for (const auto &[answer, reason] : failures) {
        LoopbackServer server([&answer = answer](int) { return answer; });
        LogCapture log;
        EXPECT_FALSE(send(*requestTo(server.url()))) << answer.bytes.left(60).constData();
        EXPECT_FALSE(server.requests().isEmpty());
        EXPECT_TRUE(log.lines().join(u'\n').contains(u"warning API request to "_qs + server.url() +
                                                     u"/track/ has failed with reason "_qs +
                                                     reason))
            << qPrintable(log.lines().join(u'\n'));
    }
    for (const char *number : {"1\n", " +7\r\n", "-1"}) {
        LoopbackServer server(LoopbackServer::always(LoopbackServer::response(200, number)));
        EXPECT_TRUE(send(*requestTo(server.url()))) << number;
    }
    LoopbackServer rejecting(LoopbackServer::always(LoopbackServer::response(200, "0")));
    LogCapture log;
    EXPECT_TRUE(send(*requestTo(rejecting.url())));
    EXPECT_TRUE(log.contains(u"info /track/ api rejected some items"_qs));

    QString gone;
    {
        LoopbackServer server(LoopbackServer::always({}));
        gone = server.url();
    }
    EXPECT_FALSE(send(*requestTo(gone)));
}

TEST_F(Wire, AServerThatNeverAnswersIsGivenUp)
{
    LoopbackServer server(LoopbackServer::always({}));
    const auto request = requestTo(server.url(), std::chrono::milliseconds(100));
    EXPECT_FALSE(send(*request));
    EXPECT_EQ(request->networkConsecutiveFailures(), 1);
    // The transport must come down with the request abandoned and with one under way. On a busy
    // machine the first may never have got as far as the server.
    const qsizetype before = server.requests().size();
    transport->start({QUrl(server.url()), "post", QByteArray("x"), {}}, [](const HTTPOutcome &) {});
    EXPECT_TRUE(waitUntil([&] { return server.requests().size() > before; }));
}
