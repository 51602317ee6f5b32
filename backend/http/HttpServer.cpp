// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/HttpServer.h"

#include "backend/http/HttpConnection.h"

#include <algorithm>

HttpServer::HttpServer(HttpHandler handler, const HttpAdmission &admission,
                       const HttpLimits &limits, QObject *parent)
    : QTcpServer(parent)
    , m_handler(std::move(handler))
    , m_admission(admission)
    , m_limits(limits)
{
    setListenBacklogSize(int(limits.maxConnections));
}

HttpServer::~HttpServer() = default;

void HttpServer::incomingConnection(qintptr descriptor)
{
    const bool hasRoom = makeRoom();
    auto *connection = m_connections
                           .emplace_back(std::make_unique<HttpConnection>(
                               int(descriptor), m_handler, m_admission, m_limits))
                           .get();
    connect(connection, &HttpConnection::idle, this, [this, connection] {
        const auto place = std::find_if(m_connections.begin(), m_connections.end(),
                                        [&](const auto &c) { return c.get() == connection; });
        m_connections.splice(m_connections.end(), m_connections, place);
    });
    // Queued: a connection must not be destroyed inside its own call.
    connect(
        connection, &HttpConnection::closed, this, [this, connection] { remove(connection); },
        Qt::QueuedConnection);
    // Everyone is being answered: further clients wait in the listening socket's queue.
    if (!hasRoom)
        pauseAccepting();
}

bool HttpServer::makeRoom()
{
    if (m_connections.size() + 1 < m_limits.maxConnections)
        return true;
    for (const bool admitted : {false, true}) {
        const auto oldest =
            std::find_if(m_connections.begin(), m_connections.end(), [&](const auto &connection) {
                return connection->isIdle() && connection->isAdmitted() == admitted;
            });
        if (oldest != m_connections.end()) {
            m_connections.erase(oldest);
            return true;
        }
    }
    return false;
}

void HttpServer::remove(HttpConnection *connection)
{
    m_connections.remove_if([&](const auto &other) { return other.get() == connection; });
    resumeAccepting();
}
