// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "BackendProcess.h"
#include "FakeModel.h"
#include "backend/http/RequestTarget.h"
#include "support/WaitUntil.h"

#include <QNetworkReply>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace
{

QByteArray requestFor(const QByteArray &line, const QByteArray &fields = "Host: 127.0.0.1\r\n")
{
    return line + " HTTP/1.1\r\n" + fields + "\r\n";
}

FakeModel::Behaviour echo()
{
    return [](QTcpSocket *socket, const FakeModel::Request &request) {
        FakeModel::json(request.text())(socket, request);
    };
}

BackendProcess::Environment modelAt(const FakeModel &model)
{
    return {{u"QUILLET_MODEL_URL"_qs, u"http://127.0.0.1:%1"_qs.arg(model.port())}};
}

TEST(HttpSurface, RefusesWhatItDoesNotServeWithASentence)
{
    const BackendProcess backend;
    const struct {
        QByteArray request;
        QByteArray status;
        QByteArray named;
    } cases[] = {
        {requestFor("GET /"), "404", "/generate"},
        {requestFor("GET /generate/?command=rate&text="), "404", "/generate"},
        {requestFor("GET /generate?text=a"), "400", "\"command\""},
        {requestFor("GET /generate?command=clear"), "400", "\"text\""},
        {requestFor("GET /generate?command=improve&text=a"), "400", "no such command"},
        {requestFor("GET /generate?command=clear&text=%20%0A"), "400", "no text"},
        {requestFor("GET /generate?command=clear&text=%F0%9F"), "400", "UTF-8"},
        {requestFor("GET /generate?command=clear&text=100%"), "400", "percent"},
        {requestFor("POST /generate?command=clear&text=a"), "405", "Allow: GET, HEAD"},
        {requestFor("OPTIONS /generate"), "405", "Allow: GET"},
        {requestFor("GET /track/"), "405", "Allow: POST"},
        {requestFor("GET /generate?command=rate&text=", "Host: quillet.example\r\n"), "421",
         "host"},
        {requestFor("GET /generate?command=rate&text=", "Host: 192.168.1.7\r\n"), "421", "host"},
        {requestFor("GET /generate?command=rate&text=", ""), "400", "Host"},
        {requestFor("GET /generate?command=rate&text=", "Host: localhost\r\nHost: localhost\r\n"),
         "400", "Host"},
        {requestFor("GET /generate?command=rate&text=",
                    "Host: localhost\r\nOrigin: https://page.example\r\n"),
         "403", "Web pages"},
        {requestFor("GET /generate?command=rate&text=",
                    "Host: localhost\r\nSec-Fetch-Site: cross-site\r\n"),
         "403", "Web pages"},
        {"nonsense\r\n\r\n", "400", "HTTP"},
        {requestFor("GET http://quillet.example/generate?command=rate&text="), "421", "host"},
        {requestFor("GET ftp://localhost/generate?command=rate&text="), "400", "address"},
        {requestFor("GET /found-server"), "403", "application"},
        {requestFor("GET /x", "Host: a\r\nX: " + QByteArray(200'000, 'x') + "\r\n"), "431", "long"},
    };
    for (const auto &[request, status, named] : cases) {
        const QByteArray answer = backend.exchange(request);
        EXPECT_TRUE(answer.startsWith("HTTP/1.1 " + status))
            << request.left(100).constData() << '\n'
            << answer.constData();
        EXPECT_TRUE(answer.contains(named)) << answer.constData();
        EXPECT_TRUE(answer.contains("\r\n\r\n\u24d8 ")) << "a note: " << answer.constData();
        EXPECT_FALSE(answer.contains("Access-Control-Allow")) << answer.constData();
    }
}

TEST(HttpSurface, TakesRequestLinesUpToOneMebibyte)
{
    FakeModel model([](QTcpSocket *socket, const FakeModel::Request &request) {
        FakeModel::json(QString::number(request.text().size()))(socket, request);
    });
    auto environment = modelAt(model);
    environment.append({u"QUILLET_MODEL_WINDOW"_qs, u"4000000"_qs});
    const BackendProcess backend(environment);
    const QByteArray start = "GET /generate?command=concise&text=";
    const auto room = 1024 * 1024 - start.size() - qsizetype(sizeof " HTTP/1.1" - 1);

    const QByteArray longest = backend.exchange(requestFor(start + QByteArray(room, 'a')));
    EXPECT_TRUE(longest.startsWith("HTTP/1.1 200")) << longest.left(400).constData();
    EXPECT_TRUE(longest.contains("\r\n" + QByteArray::number(room) + "\r\n"))
        << longest.constData();

    for (const auto excess : {1, 5 * 1024 * 1024}) {
        const QByteArray answer =
            backend.exchange(requestFor(start + QByteArray(room + excess, 'a')));
        EXPECT_TRUE(answer.startsWith("HTTP/1.1 414")) << answer.constData();
        EXPECT_TRUE(answer.contains("too long")) << answer.constData();
    }
}

TEST(HttpSurface, DeliversTheTextAsItWasSent)
{
    FakeModel model(echo());
    const BackendProcess backend(modelAt(model));
    for (const QString &text :
         {u"1 + 1 = 2 & 100% \"so\" #x?y;z"_qs,
          u"👩‍👩‍👧 naïve Ελληνικά हिन्दी 漢字"_qs,
          u"\r\n  two lines\r\n\r\nmore\t \r\n"_qs}) {
        const Answer answer = fetch(backend.generate(u"clear"_qs, text));
        EXPECT_EQ(answer.status, 200);
        EXPECT_EQ(answer.text, text);
    }
    // A byte order mark is a part of the text as well.
    const auto target = parseRequestTarget("/generate?text=%ef%bb%bfa+b&&text=later");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->items.value(u"text"_qs), u"\ufeffa+b"_qs);
}

TEST(HttpSurface, ReadsPiecesAndPipelinesAndKeepsConnectionsAlive)
{
    const BackendProcess backend;
    const QByteArray one = requestFor("GET /generate?command=rate&text=");
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, backend.port());
    ASSERT_TRUE(waitUntil([&] { return socket.state() == QAbstractSocket::ConnectedState; }));
    for (const char c : one) {
        socket.write(&c, 1);
        socket.flush();
    }
    socket.write(one + one);
    QByteArray answers;
    EXPECT_TRUE(waitUntil([&] {
        answers += socket.readAll();
        return answers.count("HTTP/1.1 200 OK\r\n") == 3;
    })) << answers.constData();
    EXPECT_EQ(socket.state(), QAbstractSocket::ConnectedState);
}

TEST(HttpSurface, AnswersAbsoluteAddressesAndAsksForFieldsOnly)
{
    const BackendProcess backend;
    const QByteArray absolute = backend.exchange(
        requestFor("GET HTTP://localhost/generate?command=rate&text=", "Host: other.example\r\n"));
    EXPECT_TRUE(absolute.startsWith("HTTP/1.1 200")) << absolute.constData();
    const QByteArray head =
        backend.exchange(requestFor("HEAD /generate?command=clear&text=a") +
                         requestFor("HEAD /nowhere", "Host: localhost\r\nConnection: close\r\n"));
    EXPECT_TRUE(head.startsWith("HTTP/1.1 200")) << head.constData();
    EXPECT_TRUE(head.contains("\r\n\r\nHTTP/1.1 404")) << head.constData();
    EXPECT_TRUE(head.endsWith("close\r\n\r\n")) << head.constData();
}

TEST(HttpSurface, ThanksForAnalyticsAndKeepsNothing)
{
    BackendProcess backend;
    for (const QString &path : {u"/track/"_qs, u"/engage/"_qs, u"/groups/"_qs}) {
        QUrl url(u"http://127.0.0.1:%1%2?ip=1"_qs.arg(backend.port()).arg(path));
        const Answer answer = post(url, "[{\"event\":\"secret-event\"}]");
        EXPECT_EQ(answer.status, 200);
        EXPECT_EQ(answer.text, u"1"_qs);
    }
    const QByteArray gzip("\x1f\x8b\x08\x00\x00\xff", 6);
    const QByteArray answer = backend.exchange(
        requestFor("post /track/?ip=0", "Host: localhost\r\nContent-Encoding: gzip\r\n"
                                        "Content-Length: 6\r\n") +
        gzip);
    EXPECT_TRUE(answer.endsWith("\r\n\r\n1")) << answer.constData();
    EXPECT_TRUE(backend.log().isEmpty()) << backend.log().constData();
    EXPECT_TRUE(QDir(backend.folder.path()).isEmpty());
}

TEST(HttpSurface, AsksForTheSecret)
{
    const BackendProcess backend({{u"QUILLET_BACKEND_SECRET"_qs, u"right"_qs}});
    QUrl url = backend.generate(u"rate"_qs, {});
    const QByteArray challenge = backend.exchange(requestFor("GET /generate?command=rate&text="));
    EXPECT_TRUE(challenge.startsWith("HTTP/1.1 401"));
    EXPECT_TRUE(challenge.contains("WWW-Authenticate: Basic realm=\"Quillet\""))
        << challenge.constData();
    url.setUserName(u"quillet"_qs);
    url.setPassword(u"wrong"_qs);
    EXPECT_EQ(fetch(url).status, 401);
    url.setPassword(u"right"_qs);
    EXPECT_EQ(fetch(url).status, 200);
    url.setPath(u"/track/"_qs);
    EXPECT_EQ(post(url, "[]").text, u"1"_qs);
    // Nothing was looked for, so there is nothing to agree to.
    url.setPath(u"/found-server"_qs);
    EXPECT_EQ(fetch(url).text, u"{}"_qs);
    url.setQuery(u"agree=yes&address=127.0.0.1:11434&owner=0"_qs);
    EXPECT_EQ(post(url, "").status, 409);
    EXPECT_TRUE(QDir(backend.folder.path()).isEmpty());
}

TEST(HttpSurface, NeedsASecretBeyondLoopback)
{
    QProcess process;
    process.start(QStringLiteral(BACKEND_PROGRAM), {u"--listen"_qs, u"0.0.0.0"_qs});
    ASSERT_TRUE(process.waitForFinished(60'000));
    EXPECT_EQ(process.exitCode(), 2);
    EXPECT_TRUE(process.readAllStandardError().contains("QUILLET_BACKEND_SECRET"));
}

TEST(HttpSurface, AnswersTwentyRequestsAtOnceAndCancelsForClientsThatLeave)
{
    // Answers once all of them are there: a queue anywhere would hang.
    std::vector<QPointer<QTcpSocket>> held;
    FakeModel model(
        [&held](QTcpSocket *socket, const FakeModel::Request &) { held.emplace_back(socket); });
    const BackendProcess backend(modelAt(model));
    std::vector<std::unique_ptr<QNetworkAccessManager>> clients;
    std::vector<std::unique_ptr<QNetworkReply>> replies;
    for (int i = 0; i < 21; ++i) {
        clients.push_back(std::make_unique<QNetworkAccessManager>());
        replies.emplace_back(clients.back()->get(
            QNetworkRequest(backend.generate(u"clear"_qs, u"text %1"_qs.arg(i)))));
    }
    ASSERT_TRUE(waitUntil([&] { return held.size() == 21; }));
    // While they wait, other work goes on.
    EXPECT_EQ(fetch(backend.generate(u"rate"_qs, {})).status, 200);

    replies.front()->abort();
    EXPECT_TRUE(waitUntil([&] { return model.openConnections() == 20; }));
    for (std::size_t i = 0; i < held.size(); ++i) {
        if (held[i])
            FakeModel::json(model.requests()[qsizetype(i)].text())(held[i], {});
    }
    for (std::size_t i = 1; i < replies.size(); ++i) {
        ASSERT_TRUE(waitUntil([&] { return replies[i]->isFinished(); }));
        EXPECT_EQ(QString::fromUtf8(replies[i]->readAll()), u"text %1"_qs.arg(i));
    }
}

TEST(HttpSurface, SaysWhatIsAtWorkAndWhatIsWrongWithTheSettings)
{
    BackendProcess backend({{u"QUILLET_MODEL_TEMPERATURE"_qs, u"warm"_qs}});
    const QString offline = fetch(backend.generate(u"settings"_qs, {})).text;
    EXPECT_TRUE(offline.contains(u"offline"));
    EXPECT_TRUE(offline.contains(backend.folder.filePath(u"quillet/backend.ini"_qs)));
    EXPECT_TRUE(offline.contains(u"QUILLET_MODEL_TEMPERATURE: temperature must be a number"))
        << qPrintable(offline);
    EXPECT_TRUE(backend.log().contains("temperature must be a number"));

    // A change of the file holds from the next command on.
    FakeModel model(echo());
    QDir(backend.folder.path()).mkdir(u"quillet"_qs);
    QFile file(backend.folder.filePath(u"quillet/backend.ini"_qs));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[model]\nurl = http://localhost:" + QByteArray::number(model.port()) +
               "\nname = grand-1\nkey = sk-hidden\n");
    file.close();
    const QString online = fetch(backend.generate(u"settings"_qs, {})).text;
    EXPECT_TRUE(online.contains(u"\"grand-1\" at localhost:%1"_qs.arg(model.port())))
        << qPrintable(online);
    EXPECT_FALSE(online.contains(u"sk-hidden"));
    EXPECT_EQ(fetch(backend.generate(u"clear"_qs, u"abc"_qs)).text, u"abc"_qs);
    EXPECT_TRUE(model.requests().first().head.contains("Bearer sk-hidden"));
    EXPECT_FALSE(backend.log().contains("sk-hidden"));
}

} // namespace
