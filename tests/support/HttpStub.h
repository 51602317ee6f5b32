#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

/// A real HTTP server on loopback that answers each request with the bytes that the test gives, and
/// keeps what it was asked.
class HttpStub : public QTcpServer
{
public:
    /// The whole answer, header included, for a request's header block. An empty answer closes the
    /// connection; the answer "hold" leaves it open.
    std::function<QByteArray(const QByteArray &request)> answer;
    QList<QByteArray> requests;

    HttpStub()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection())
                serve(socket);
        });
    }

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

private:
    void serve(QTcpSocket *socket)
    {
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            QByteArray &header = m_pending[socket];
            header += socket->readAll();
            if (!header.contains("\r\n\r\n"))
                return;
            const QByteArray request = m_pending.take(socket);
            requests.append(request);
            const QByteArray bytes = answer ? answer(request) : reply("");
            if (bytes == "hold")
                return;
            socket->write(bytes);
            socket->disconnectFromHost();
        });
    }

    QHash<QTcpSocket *, QByteArray> m_pending;
};
