// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/writing/BackendService.h"

#include "support/HttpStub.h"
#include "support/WaitUntil.h"

#include <QUrl>

#include <gtest/gtest.h>

namespace
{

class BackendServiceTest : public testing::Test
{
protected:
    BackendService::Result get(const QString &url, const QString &text = QStringLiteral("text"))
    {
        std::optional<BackendService::Result> result;
        int calls = 0;
        service.get(url,
                    {{QStringLiteral("command"), QStringLiteral("friendly")},
                     {QStringLiteral("text"), text}},
                    [&](const BackendService::Result &r) {
                        result = r;
                        ++calls;
                    });
        EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
        EXPECT_EQ(calls, 1);
        return result.value_or(QString());
    }

    QString success(const QByteArray &answer)
    {
        server.answer = [answer](const QByteArray &) { return answer; };
        const auto result = get(server.url("/generate"));
        const auto *text = std::get_if<QString>(&result);
        EXPECT_TRUE(text);
        return text ? *text : QStringLiteral("(failure)");
    }

    QString failure(const QByteArray &answer)
    {
        server.answer = [answer](const QByteArray &) { return answer; };
        const auto result = get(server.url("/generate"));
        const auto *reason = std::get_if<BackendFailure>(&result);
        EXPECT_TRUE(reason);
        return reason ? describe(*reason) : QStringLiteral("(success)");
    }

    HttpStub server;
    BackendService service;
};

} // namespace

TEST_F(BackendServiceTest, SendsTheTextAsAQueryItem)
{
    const QString text = QStringLiteral("1+1=2 & 50% #a;b\n\"你好\" 👩🏽‍💻?/:@");
    server.answer = [](const QByteArray &) { return HttpStub::reply("ok"); };
    get(server.url("/generate?old=1"), text);
    ASSERT_EQ(server.requests.size(), 1);
    const QByteArray line = server.requests.first().split('\r').first();
    ASSERT_TRUE(line.startsWith("GET /generate?command=friendly&text=")) << line.constData();
    const QByteArray encoded = line.split(' ').at(1).split('&').at(1).mid(5);
    EXPECT_EQ(QUrl::fromPercentEncoding(encoded), text);
    EXPECT_TRUE(encoded.startsWith("1+1%3D2%20%26%2050%25%20%23a%3Bb%0A")) << encoded.constData();
}

TEST_F(BackendServiceTest, TakesTheBodyWhateverTheStatus)
{
    EXPECT_EQ(success(HttpStub::reply(" as it is \n")), QStringLiteral(" as it is \n"));
    EXPECT_EQ(success(HttpStub::reply("")), QString());
    EXPECT_EQ(success(HttpStub::reply("broken", "500 Internal Server Error")),
              QStringLiteral("broken"));
    EXPECT_EQ(success(HttpStub::reply("who are you", "401 Unauthorized")),
              QStringLiteral("who are you"));
}

TEST_F(BackendServiceTest, ReportsTransportAndDecodingFailures)
{
    EXPECT_EQ(failure(HttpStub::reply("caf\xE9")),
              QStringLiteral("❌ Failed to decode data as UTF-8 text"));
    EXPECT_EQ(failure(HttpStub::reply("cut \xE4\xBD")),
              QStringLiteral("❌ Failed to decode data as UTF-8 text"));
    EXPECT_FALSE(failure("").isEmpty()) << "connection closed";
    EXPECT_FALSE(failure("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf").isEmpty());

    const QString gone = server.url("/generate");
    server.close();
    EXPECT_TRUE(std::holds_alternative<BackendFailure>(get(gone)));
}

TEST_F(BackendServiceTest, UnderstandsTheMarksOfALiveAnswerOnlyWhereTheyWereAnnounced)
{
    const QByteArray body("wrong\0\x18r\0ight\x1eQuillet-Writer: a%20model\r\n", 41);
    const QByteArray live =
        "HTTP/1.1 200 OK\r\nPreference-Applied: live\r\nConnection: close\r\n\r\n";
    const auto asItComes = [this](const QByteArray &answer) {
        server.answer = [answer](const QByteArray &) { return answer; };
        QString text;
        const auto request = service.getAsItComes(
            server.url("/generate"), {}, [](const AnswerPiece &) {},
            [&](const BackendService::AnswerResult &result) {
                text = std::get<BackendAnswer>(result).text;
            });
        EXPECT_TRUE(waitUntil([&] { return !text.isEmpty(); }));
        return text;
    };
    EXPECT_EQ(asItComes(live + body), QStringLiteral("right"));
    EXPECT_TRUE(server.requests.last().contains("Prefer: live"));
    EXPECT_EQ(asItComes(HttpStub::reply("a\x18z")), QStringLiteral("a\u0018z"));
    EXPECT_EQ(success(live + body), QString::fromLatin1(body)) << "it did not ask for them";
    EXPECT_FALSE(server.requests.last().contains("Prefer:"));
}

TEST_F(BackendServiceTest, FollowsNoRedirectToAnotherServerAndRepeatsNoAddress)
{
    HttpStub other;
    const QString text = QStringLiteral("private");
    server.answer = [&](const QByteArray &) {
        return "HTTP/1.1 307 Moved\r\nContent-Length: 0\r\nLocation: " +
               other.url("/generate").toLatin1() + "\r\n\r\n";
    };
    const auto result = get(server.url("/with/secret/generate"), text);
    EXPECT_TRUE(other.requests.isEmpty());
    const auto *reason = std::get_if<BackendFailure>(&result);
    ASSERT_TRUE(reason);
    for (const char16_t *part : {u"127.0.0.1", u"private", u"secret"})
        EXPECT_FALSE(describe(*reason).contains(QString::fromUtf16(part)))
            << qPrintable(describe(*reason));
}

TEST_F(BackendServiceTest, GivesUpWhenNothingComes)
{
    BackendService hasty(nullptr, std::chrono::milliseconds(100));
    QTcpServer deaf;
    ASSERT_TRUE(deaf.listen(QHostAddress::LocalHost));
    std::optional<BackendService::Result> result;
    hasty.get(QStringLiteral("http://127.0.0.1:%1/").arg(deaf.serverPort()), {},
              [&](const BackendService::Result &r) { result = r; });
    EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
    EXPECT_EQ(describe(std::get<BackendFailure>(*result)), QStringLiteral("The request timed out"));
}

TEST_F(BackendServiceTest, GivesUpOnAnAnswerWithoutEnd)
{
    const QByteArray body(BackendService::maxAnswerSize + 1'000'000, 'x');
    EXPECT_EQ(failure(HttpStub::reply(body)), QStringLiteral("The answer is larger than 32 MB"));
}
