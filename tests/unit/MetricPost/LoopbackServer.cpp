#include "LoopbackServer.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace metricpost::test
{

LoopbackServer::LoopbackServer(Behaviour behaviour)
    : m_behaviour(std::move(behaviour))
    , m_listener(::socket(AF_INET, SOCK_STREAM, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    EXPECT_EQ(::bind(m_listener, reinterpret_cast<sockaddr *>(&address), size), 0);
    EXPECT_EQ(::listen(m_listener, 16), 0);
    EXPECT_EQ(::getsockname(m_listener, reinterpret_cast<sockaddr *>(&address), &size), 0);
    m_port = ntohs(address.sin_port);
    m_acceptor = std::thread([this] { accept(); });
}

LoopbackServer::~LoopbackServer()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
        for (const int connection : m_connections)
            ::shutdown(connection, SHUT_RDWR);
    }
    ::shutdown(m_listener, SHUT_RDWR);
    m_acceptor.join();
    for (std::thread &thread : m_threads)
        thread.join();
    for (const int connection : m_connections)
        ::close(connection);
    ::close(m_listener);
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

void LoopbackServer::accept()
{
    while (true) {
        const int connection = ::accept(m_listener, nullptr, nullptr);
        if (connection < 0)
            return;
        const std::lock_guard lock(m_mutex);
        m_connections.push_back(connection);
        if (m_ending)
            return;
        m_threads.emplace_back([this, connection] { serve(connection); });
    }
}

void LoopbackServer::serve(int connection)
{
    QByteArray received;
    char buffer[65536];
    while (true) {
        const qsizetype headEnd = received.indexOf("\r\n\r\n");
        qsizetype wanted = -1;
        if (headEnd >= 0) {
            const QByteArray head = received.first(headEnd).toLower();
            const qsizetype field = head.indexOf("content-length:");
            const qsizetype length =
                field < 0 ? 0 : head.mid(field + 15).split('\r').first().trimmed().toLongLong();
            wanted = headEnd + 4 + length;
        }
        if (wanted < 0 || received.size() < wanted) {
            const ssize_t count = ::recv(connection, buffer, sizeof buffer, 0);
            if (count <= 0)
                return;
            received.append(buffer, count);
            continue;
        }
        int number = 0;
        {
            const std::lock_guard lock(m_mutex);
            m_requests.append(received.first(wanted));
            number = int(m_requests.size());
        }
        received.remove(0, wanted);
        const Answer answer = m_behaviour(number);
        ::send(connection, answer.bytes.constData(), std::size_t(answer.bytes.size()),
               MSG_NOSIGNAL);
        switch (answer.then) {
        case Then::KeepOpen:
        case Then::Hang:
            break;
        case Then::Close:
            ::shutdown(connection, SHUT_RDWR);
            return;
        case Then::Reset: {
            // Discarding what the peer sent after closing makes the kernel send a reset.
            const linger now{1, 0};
            ::setsockopt(connection, SOL_SOCKET, SO_LINGER, &now, sizeof now);
            const std::lock_guard lock(m_mutex);
            std::erase(m_connections, connection);
            ::close(connection);
            return;
        }
        }
    }
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
