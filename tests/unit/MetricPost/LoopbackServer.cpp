// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "LoopbackServer.h"

#include "support/HttpStub.h"

#include <zlib.h>

#include <sys/socket.h>

namespace metricpost::test
{

class LoopbackServer::Server : public HttpDouble
{
public:
    explicit Server(LoopbackServer &owner)
        : m_owner(owner)
    {
    }

protected:
    void serve(QTcpSocket *socket, const QByteArray &head, const QByteArray &body) override
    {
        int number = 0;
        {
            const std::lock_guard lock(m_owner.m_mutex);
            m_owner.m_requests.append(head + "\r\n\r\n" + body);
            number = int(m_owner.m_requests.size());
        }
        const Answer answer = m_owner.m_behaviour(number);
        socket->write(answer.bytes);
        if (answer.then == Then::Close) {
            socket->disconnectFromHost();
        } else if (answer.then == Then::Reset) {
            // Discarding what the peer sent after closing makes the kernel send a reset.
            const linger now{1, 0};
            ::setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &now, sizeof now);
            socket->abort();
        }
    }

private:
    LoopbackServer &m_owner;
};

LoopbackServer::LoopbackServer(Behaviour behaviour)
    : m_behaviour(std::move(behaviour))
{
    auto *server = new Server(*this);
    m_port = server->serverPort();
    server->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, server, &QObject::deleteLater);
    m_thread.start();
}

LoopbackServer::~LoopbackServer()
{
    m_thread.quit();
    m_thread.wait();
}

LoopbackServer::Behaviour LoopbackServer::always(const QByteArray &bytes)
{
    return [bytes](int) { return Answer{bytes}; };
}

QString LoopbackServer::url() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(m_port);
}

QList<QByteArray> LoopbackServer::requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

QByteArray LoopbackServer::response(int status, const QByteArray &body,
                                    const QByteArray &moreHeaders)
{
    return "HTTP/1.1 " + QByteArray::number(status) + " Status\r\n" + moreHeaders +
           "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

QByteArray bodyOf(const QByteArray &request)
{
    return request.mid(request.indexOf("\r\n\r\n") + 4);
}

QByteArray gunzip(const QByteArray &data)
{
    z_stream stream{};
    inflateInit2(&stream, 31);
    QByteArray result(qsizetype(64) * 1024 * 1024, '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.data()));
    stream.avail_in = uInt(data.size());
    stream.next_out = reinterpret_cast<Bytef *>(result.data());
    stream.avail_out = uInt(result.size());
    const int status = inflate(&stream, Z_FINISH);
    result.resize(status == Z_STREAM_END ? qsizetype(stream.total_out) : 0);
    inflateEnd(&stream);
    return result;
}

} // namespace metricpost::test
