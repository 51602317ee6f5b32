// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/HttpServer.h"
#include "backend/http/AccessPolicy.h"
#include "support/WaitUntil.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTcpSocket>
#include <gtest/gtest.h>
#include <sys/socket.h>

using namespace std::chrono_literals;

namespace
{

/// A client that sees every byte.
class Client : public QTcpSocket
{
public:
    Client(const HttpServer &server, const QByteArray &bytes)
    {
        connectToHost(QHostAddress::LocalHost, server.serverPort());
        EXPECT_TRUE(waitUntil([this] { return state() == ConnectedState; }));
        write(bytes);
        flush();
    }

    bool sees(const QByteArray &bytes)
    {
        return waitUntil([&] {
                   seen += readAll();
                   return seen.contains(bytes) || state() == UnconnectedState;
               }) &&
               seen.contains(bytes);
    }

    bool isClosed()
    {
        return waitUntil([this] {
            seen += readAll();
            return state() == UnconnectedState;
        });
    }

    QByteArray seen;
};

QByteArray get(const QByteArray &fields = {}, const QByteArray &target = "/with/pass/x")
{
    return "GET " + target + " HTTP/1.1\r\nHost: localhost\r\n" + fields + "\r\n";
}

/// A server whose one answer the test writes. Its secret is "pass".
class HttpServerTest : public testing::Test
{
protected:
    struct Work : PendingWork {
        explicit Work(int &ended)
            : m_ended(ended)
        {
        }
        ~Work() override { ++m_ended; }
        int &m_ended;
    };

    void start(const HttpLimits &limits = {})
    {
        server = std::make_unique<HttpServer>(
            [this](const HttpRequest &request, HttpRespond respond) {
                requests += request;
                responds.push_back(std::move(respond));
                return std::make_unique<Work>(ended);
            },
            policy, limits);
        ASSERT_TRUE(server->listen(QHostAddress::LocalHost, 0));
    }

    HttpRespond &request(std::size_t index = 0)
    {
        EXPECT_TRUE(waitUntil([&] { return responds.size() > index; }));
        return responds.at(index);
    }

    const AccessPolicy policy{QHostAddress(QHostAddress::LocalHost), "pass"};
    int ended = 0;
    QList<HttpRequest> requests;
    std::vector<HttpRespond> responds;
    std::unique_ptr<HttpServer> server;
};

TEST_F(HttpServerTest, SendsPiecesAsTheyComeAndTheRestAtTheEnd)
{
    start();
    Client client(*server, get());
    HttpRespond &respond = request();
    respond.piece({"be", false});
    EXPECT_TRUE(client.sees("\r\n2\r\nbe\r\n")) << client.seen.constData();
    respond.piece({"ginning", false});
    respond.complete({200, "beginning and end", {{"Quillet-Writer", "m"}}});
    EXPECT_TRUE(client.sees("\r\n8\r\n and end\r\n0\r\n\r\n")) << client.seen.constData();
    // The next request on the same connection is answered whole.
    client.write(get());
    request(1);
    request().piece({"late", false});
    request().complete({200, "late"});
    request(1).complete({404, "no"});
    EXPECT_TRUE(client.sees("Content-Length: 6\r\n\r\n\u24d8 no")) << client.seen.constData();
    EXPECT_EQ(client.seen.count("404"), 1);
    EXPECT_TRUE(waitUntil([&] { return ended == 2; }));
}

TEST_F(HttpServerTest, WithdrawsWhatWasWrongForClientsThatKnowHow)
{
    start();
    Client live(*server, get("Prefer: live\r\n"));
    request().piece({"wrong", false});
    request().complete({200, "right", {{"Quillet-Remark", "r"}}});
    EXPECT_TRUE(live.sees("\x18right\x1eQuillet-Remark: r\r\n\r\n0\r\n\r\n"))
        << live.seen.constData();
    EXPECT_TRUE(live.seen.contains("Preference-Applied: live\r\n"));

    // Another client must not take the wrong text for the answer: the body has no end.
    Client plain(*server, get());
    request(1).piece({"wrong", false});
    request(1).complete({200, "right"});
    EXPECT_TRUE(plain.isClosed());
    EXPECT_TRUE(plain.seen.contains("wrong"));
    EXPECT_FALSE(plain.seen.contains("\r\n0\r\n"));
}

TEST_F(HttpServerTest, ShowsThatWorkGoesOn)
{
    HttpLimits limits;
    limits.silence = 20ms;
    start(limits);
    Client live(*server, get("Prefer: live\r\n"));
    EXPECT_TRUE(live.sees(QByteArray("1\r\n\0\r\n1\r\n\0\r\n", 12)));
    request().complete({200, "text"});
    EXPECT_TRUE(live.sees("4\r\ntext\r\n0\r\n\r\n")) << live.seen.constData();

    // To others with what HTTP/1.1 passes over, before the answer and in it.
    QNetworkAccessManager network;
    const std::unique_ptr<QNetworkReply> plain(network.get(
        QNetworkRequest(QUrl(u"http://127.0.0.1:%1/with/pass/x"_qs.arg(server->serverPort())))));
    request(1);
    Client bytes(*server, get());
    EXPECT_TRUE(bytes.sees("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 100 Continue\r\n\r\n"));
    request(2).piece({"te"});
    EXPECT_TRUE(bytes.sees("2\r\nte\r\n00"));
    for (const qsizetype number : {1, 2})
        responds[number].complete({200, "text"});
    EXPECT_TRUE(bytes.sees("02\r\nxt\r\n0\r\n\r\n")) << bytes.seen.constData();
    EXPECT_TRUE(waitUntil([&] { return plain->isFinished(); }));
    EXPECT_EQ(plain->readAll(), "text");
}

TEST_F(HttpServerTest, CancelsForAClientThatLeavesAndAnswersOneThatHasSentItsLast)
{
    start();
    {
        Client leaving(*server, get());
        request();
    }
    EXPECT_TRUE(waitUntil([&] { return ended == 1; }));
    // Nothing happens for an answer that comes too late.
    responds[0].complete({200, "late"});

    Client halved(*server, get());
    request(1);
    ::shutdown(int(halved.socketDescriptor()), SHUT_WR);
    QThread::msleep(300);
    QCoreApplication::processEvents();
    EXPECT_EQ(ended, 1) << "its answer is still wanted";
    responds[1].complete({200, QByteArray(3'000'000, 'x') + "end"});
    EXPECT_TRUE(halved.isClosed());
    EXPECT_TRUE(halved.seen.endsWith("xend"));
}

TEST_F(HttpServerTest, GivesStrangersLittleTimeAndMemory)
{
    HttpLimits limits;
    limits.admission = 100ms;
    limits.maxStrangersHead = 1000;
    start(limits);
    Client silent(*server, "GET /wi");
    EXPECT_TRUE(silent.isClosed());
    EXPECT_EQ(silent.seen, QByteArray());

    limits.admission = 60s;
    start(limits);
    Client long1(*server, get({}, "/with/pass/x?" + QByteArray(500'000, 'x')));
    request().complete({200, "yes"});
    EXPECT_TRUE(long1.sees("yes"));
    for (const QByteArray &target :
         {QByteArray("/with/pasS/x?"), QByteArray("/with/pas/x?"), QByteArray("/x?")}) {
        Client stranger(*server, get({}, target + QByteArray(2000, 'x')));
        EXPECT_TRUE(stranger.sees("HTTP/1.1 401")) << target.constData();
    }
    EXPECT_EQ(requests.size(), 1);
}

TEST_F(HttpServerTest, LetsTheOldestIdleConnectionGo)
{
    HttpLimits limits;
    limits.maxConnections = 4;
    start(limits);
    Client known(*server, get());
    request().complete({200, "known"});
    EXPECT_TRUE(known.sees("known"));
    Client busy(*server, get());
    request(1);
    std::vector<std::unique_ptr<Client>> strangers;
    strangers.reserve(6);
    for (int i = 0; i < 6; ++i)
        strangers.push_back(std::make_unique<Client>(*server, "GET"));
    EXPECT_TRUE(strangers.front()->isClosed());
    EXPECT_EQ(strangers.back()->state(), QAbstractSocket::ConnectedState);
    // The application's own connections stay.
    known.write(get());
    request(2).complete({200, "again"});
    EXPECT_TRUE(known.sees("again"));
    responds[1].complete({200, "done"});
    EXPECT_TRUE(busy.sees("done"));
}

TEST_F(HttpServerTest, TheConnectionThatHasBeenIdleLongestGoesFirst)
{
    HttpLimits limits;
    limits.maxConnections = 3;
    start(limits);
    Client first(*server, get());
    request().complete({200, "a"});
    EXPECT_TRUE(first.sees("\r\n\r\na"));
    Client second(*server, get());
    request(1).complete({200, "b"});
    EXPECT_TRUE(second.sees("\r\n\r\nb"));
    first.write(get());
    request(2).complete({200, "c"});
    EXPECT_TRUE(first.sees("\r\n\r\nc"));
    const Client third(*server, get());
    EXPECT_TRUE(second.isClosed());
    request(3);
    EXPECT_EQ(first.state(), QAbstractSocket::ConnectedState);
}

TEST_F(HttpServerTest, AnIdleConnectionIsClosedAfterAWhile)
{
    HttpLimits limits;
    limits.request = 50ms;
    start(limits);
    Client client(*server, get());
    request().complete({200, "yes"});
    EXPECT_TRUE(client.sees("yes"));
    EXPECT_TRUE(client.isClosed());
}

TEST_F(HttpServerTest, ClientsBeyondTheLimitWaitForThoseThatAreBeingAnswered)
{
    HttpLimits limits;
    limits.maxConnections = 2;
    start(limits);
    Client first(*server, get("Connection: close\r\n"));
    request();
    Client second(*server, get());
    request(1);
    Client third(*server, get());
    EXPECT_EQ(requests.size(), 2);
    responds[0].complete({200, "one"});
    EXPECT_TRUE(first.sees("one"));
    EXPECT_TRUE(first.isClosed());
    request(2).complete({200, "three"});
    EXPECT_TRUE(third.sees("three"));
    responds[1].complete({200, "two"});
    EXPECT_TRUE(second.sees("two"));
}

TEST_F(HttpServerTest, RefusesABodyWithoutALength)
{
    start();
    for (const QByteArray &body : {QByteArray("0\r\n\r\n"), QByteArray("1\r\nx\r\n0\r\n\r\n")}) {
        Client client(*server, "POST /with/pass/ HTTP/1.1\r\nHost: localhost\r\n"
                               "Transfer-Encoding: chunked\r\n\r\n" +
                                   body);
        EXPECT_TRUE(client.sees("HTTP/1.1 411")) << client.seen.constData();
    }
    EXPECT_TRUE(requests.isEmpty());
}

} // namespace
