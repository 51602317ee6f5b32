// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "NullServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <string>

namespace metricpost::bench
{

NullServer::NullServer(Manner manner)
    : m_manner(manner)
    , m_listener(::socket(AF_INET, SOCK_STREAM, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (::bind(m_listener, reinterpret_cast<sockaddr *>(&address), size) != 0 ||
        ::listen(m_listener, 16) != 0 ||
        ::getsockname(m_listener, reinterpret_cast<sockaddr *>(&address), &size) != 0) {
        std::abort();
    }
    m_port = ntohs(address.sin_port);
    m_acceptor = std::thread([this] {
        int connection = -1;
        while ((connection = ::accept(m_listener, nullptr, nullptr)) >= 0) {
            const std::lock_guard lock(m_mutex);
            m_connections.push_back(connection);
            m_threads.emplace_back([this, connection] { serve(connection); });
        }
    });
}

NullServer::~NullServer()
{
    ::shutdown(m_listener, SHUT_RDWR);
    m_acceptor.join();
    for (const int connection : m_connections)
        ::shutdown(connection, SHUT_RDWR);
    for (std::thread &thread : m_threads)
        thread.join();
    for (const int connection : m_connections)
        ::close(connection);
    ::close(m_listener);
}

QString NullServer::url() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(m_port);
}

void NullServer::serve(int connection)
{
    const std::string answer = m_manner == Manner::Fail
                                   ? "HTTP/1.1 503 No\r\nContent-Length: 0\r\n\r\n"
                                   : "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n1";
    std::string received;
    char buffer[65536];
    long long reported = 0;
    ssize_t count = 0;
    while ((count = ::recv(connection, buffer, sizeof buffer, 0)) > 0) {
        received.append(buffer, std::size_t(count));
        const std::size_t head = received.find("\r\n\r\n");
        const std::size_t field = received.find("Content-Length: ");
        if (head == std::string::npos || field == std::string::npos)
            continue;
        if (received.size() < head + 4 + std::stoul(received.substr(field + 16)))
            continue;
        received.clear();
        if (m_manner != Manner::Hang)
            ::send(connection, answer.data(), answer.size(), MSG_NOSIGNAL);
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        const long long used = time.tv_sec * 1'000'000'000LL + time.tv_nsec;
        m_cpuNanoseconds += used - reported;
        reported = used;
    }
}

} // namespace metricpost::bench
