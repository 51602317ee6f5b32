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
        Environment environment = sandbox.environment();
        environment.transport = transport;
        return std::make_unique<FlushRequest>(url, environment, limit);
    }
    static bool send(FlushRequest &request, bool gzip = false)
    {
        return request.sendRequest("[{\"a\":1}]", FlushType::events, true, {}, {}, gzip);
    }

    Sandbox sandbox;
    std::shared_ptr<QtHTTPTransport> transport = std::make_shared<QtHTTPTransport>();
};

} // namespace

TEST_F(Wire, CarriesTheLowerCaseMethodTheQueryAndTheBody)
{
    LoopbackServer server(
        [](int) { return LoopbackServer::Answer{LoopbackServer::response(200, "1")}; });
    const auto request = requestTo(server.url());
    EXPECT_TRUE(send(*request));
    EXPECT_TRUE(send(*request, true));
    ASSERT_EQ(server.requests().size(), 2);
    const QByteArray plain = server.requests()[0];
    EXPECT_TRUE(plain.startsWith("post /track/?ip=1 HTTP/1.1\r\n")) << plain.constData();
    EXPECT_TRUE(plain.contains("Content-Type: application/json\r\n"));
    EXPECT_FALSE(plain.contains("Content-Encoding"));
    EXPECT_TRUE(plain.contains("\r\nAccept-Language: *\r\n"));
    EXPECT_EQ(bodyOf(plain), "[{\"a\":1}]");
    const QByteArray compressed = server.requests()[1];
    EXPECT_TRUE(compressed.contains("Content-Encoding: gzip\r\n"));
    EXPECT_EQ(gunzip(bodyOf(compressed)), "[{\"a\":1}]");
}

TEST_F(Wire, AnythingButAWhole200WithAnIntegerCountsAsNotSent)
{
    const QByteArray ok = LoopbackServer::response(200, "1");
    const QList<LoopbackServer::Answer> failures{
        {LoopbackServer::response(500, "1"), Then::KeepOpen},
        {LoopbackServer::response(302, "1", "Location: /elsewhere/\r\n"), Then::KeepOpen},
        {LoopbackServer::response(401, "1", "WWW-Authenticate: Basic realm=\"x\"\r\n"),
         Then::Close},
        {LoopbackServer::response(200, "<html>"), Then::KeepOpen},
        {LoopbackServer::response(200, ""), Then::KeepOpen},
        {LoopbackServer::response(200, QByteArray(10'000'000, '1')), Then::KeepOpen},
        {"HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\n1", Then::Close},
        {"HTTP/1.1 200 OK\r\nContent-Le", Then::Close},
        {"SMTP ready\r\n\r\n", Then::Close},
        {"", Then::Reset},
    };
    for (const LoopbackServer::Answer &failure : failures) {
        LoopbackServer server([&](int) { return failure; });
        EXPECT_FALSE(send(*requestTo(server.url()))) << failure.bytes.left(60).constData();
        EXPECT_FALSE(server.requests().isEmpty());
    }
    QString gone;
    {
        LoopbackServer server([](int) { return LoopbackServer::Answer{}; });
        gone = server.url();
    }
    EXPECT_FALSE(send(*requestTo(gone)));
}

TEST_F(Wire, ReadsRetryAfterFromTheResponse)
{
    LoopbackServer server([](int) {
        return LoopbackServer::Answer{LoopbackServer::response(200, "0", "RETRY-AFTER: 30\r\n")};
    });
    const auto request = requestTo(server.url());
    EXPECT_TRUE(send(*request));
    EXPECT_EQ(request->networkRequestsAllowedAfterTime(), *sandbox.now + 30);
}

TEST_F(Wire, AServerThatNeverAnswersIsGivenUp)
{
    LoopbackServer server([](int) { return LoopbackServer::Answer{{}, Then::Hang}; });
    const auto request = requestTo(server.url(), std::chrono::milliseconds(100));
    EXPECT_FALSE(send(*request));
    EXPECT_EQ(request->networkConsecutiveFailures(), 1);
    // The transport must come down with the request abandoned and with one under way.
    transport->start({QUrl(server.url()), "post", QByteArray("x"), {}}, [](const HTTPOutcome &) {});
    EXPECT_TRUE(waitUntil([&] { return server.requests().size() == 2; }));
}
