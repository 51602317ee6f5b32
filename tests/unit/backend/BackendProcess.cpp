// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "BackendProcess.h"

#include "support/WaitUntil.h"

#include <QNetworkReply>
#include <QTcpSocket>
#include <QUrlQuery>
#include <gtest/gtest.h>

namespace
{

Answer waitFor(QNetworkReply *reply)
{
    EXPECT_TRUE(waitUntil([&] { return reply->isFinished(); }));
    return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
            QString::fromUtf8(reply->readAll())};
}

} // namespace

BackendProcess::BackendProcess(const Environment &environment, const QStringList &options)
{
    auto variables = QProcessEnvironment::systemEnvironment();
    variables.insert(u"XDG_CONFIG_HOME"_qs, folder.path());
    variables.insert(u"QUILLET_FIND_OLLAMA"_qs, u"false"_qs);
    for (const auto &[name, value] : environment)
        variables.insert(name, value);
    m_process.setProcessEnvironment(variables);
    m_process.start(QStringLiteral(BACKEND_PROGRAM), QStringList{u"--port"_qs, u"0"_qs} + options);
    EXPECT_TRUE(waitUntil([this] { return m_process.canReadLine(); }));
    m_port = m_process.readLine().trimmed().mid(5).toUShort();
}

BackendProcess::~BackendProcess()
{
    m_process.kill();
    m_process.waitForFinished();
}

QByteArray BackendProcess::log()
{
    return m_log += m_process.readAllStandardError();
}

QUrl BackendProcess::generate(const QString &command, const QString &text) const
{
    QUrl url(u"http://127.0.0.1:%1/generate"_qs.arg(m_port));
    QUrlQuery query;
    query.addQueryItem(u"command"_qs, command);
    // Percent-encoded by hand: QUrlQuery takes a "%" for an escape.
    query.addQueryItem(u"text"_qs, QString::fromLatin1(QUrl::toPercentEncoding(text, "+")));
    url.setQuery(query);
    return url;
}

QByteArray BackendProcess::exchange(const QByteArray &bytes) const
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, m_port);
    socket.write(bytes);
    QByteArray answer;
    const bool ended = waitUntil([&] {
        answer += socket.readAll();
        const auto head = answer.indexOf("\r\n\r\n");
        const auto length = answer.indexOf("Content-Length: ");
        const auto size = answer.mid(length + 16, answer.indexOf('\r', length) - length - 16);
        const bool whole = head >= 0 && length >= 0 && answer.size() >= head + 4 + size.toInt();
        const bool wholeInChunks = answer.endsWith("\r\n0\r\n\r\n");
        return whole || wholeInChunks || socket.state() == QAbstractSocket::UnconnectedState;
    });
    EXPECT_TRUE(ended);
    return answer;
}

Answer fetch(const QUrl &url)
{
    QNetworkAccessManager network;
    return waitFor(network.get(QNetworkRequest(url)));
}

Answer post(const QUrl &url, const QByteArray &body)
{
    QNetworkAccessManager network;
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("application/json"));
    return waitFor(network.sendCustomRequest(request, "post", body));
}
