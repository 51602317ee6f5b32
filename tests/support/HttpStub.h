// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <memory>

/// A real HTTP server on loopback that hands each whole request to the test.
class HttpDouble : public QTcpServer
{
public:
    HttpDouble()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection()) {
                auto received = std::make_shared<QByteArray>();
                connect(socket, &QTcpSocket::readyRead, this,
                        [this, socket, received] { read(socket, *received); });
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }

protected:
    /// The head is without its empty line.
    virtual void serve(QTcpSocket *socket, const QByteArray &head, const QByteArray &body) = 0;

private:
    void read(QTcpSocket *socket, QByteArray &received)
    {
        received += socket->readAll();
        const auto headEnd = received.indexOf("\r\n\r\n");
        if (headEnd < 0)
            return;
        const QByteArray head = received.first(headEnd);
        const auto length = head.toLower().indexOf("content-length:");
        const auto bodySize =
            length < 0 ? 0 : head.mid(length + 15).split('\r').first().trimmed().toLongLong();
        if (received.size() < headEnd + 4 + bodySize)
            return;
        const QByteArray body = received.mid(headEnd + 4, bodySize);
        received.remove(0, headEnd + 4 + bodySize);
        serve(socket, head, body);
    }
};

/// Answers each request with the bytes that the test gives, and keeps what it was asked.
class HttpStub : public HttpDouble
{
public:
    /// The whole answer, header included, for a request's head. An empty answer only closes the
    /// connection.
    std::function<QByteArray(const QByteArray &request)> answer;
    QList<QByteArray> requests;

    QString url(const char *path) const
    {
        return QStringLiteral("http://127.0.0.1:%1%2")
            .arg(serverPort())
            .arg(QLatin1StringView(path));
    }

    static QByteArray reply(const QByteArray &body, const QByteArray &status = "200 OK")
    {
        return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\nConnection: close\r\n\r\n" + body;
    }

protected:
    void serve(QTcpSocket *socket, const QByteArray &head, const QByteArray &) override
    {
        requests.append(head);
        socket->write(answer ? answer(head) : reply(""));
        socket->disconnectFromHost();
    }
};
