// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/HttpServer.h"

#include "backend/http/HttpConnection.h"

namespace
{
constexpr int maximumConnections = 256;
}

HttpServer::HttpServer(HttpHandler handler, QObject *parent)
    : QObject(parent)
    , m_handler(std::move(handler))
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] { accept(); });
}

bool HttpServer::listen(const QHostAddress &address, quint16 port)
{
    return m_server.listen(address, port);
}

void HttpServer::accept()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        auto *connection = new HttpConnection(socket, m_handler, this);
        ++m_connections;
        connect(connection, &QObject::destroyed, this, [this] {
            --m_connections;
            m_server.resumeAccepting();
        });
        // Further clients wait in the listening socket's queue.
        if (m_connections >= maximumConnections)
            m_server.pauseAccepting();
    }
}
