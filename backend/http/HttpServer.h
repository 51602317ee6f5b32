// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/http/HttpHandler.h"

#include <QHostAddress>
#include <QTcpServer>

/// An HTTP/1.1 server on the event loop of the thread that made it: no thread
/// waits for a slow answer. Connections are kept alive; when a client goes
/// away, the work for its request is cancelled.
///
/// Bounds: a request line of 1 MiB (414 above it), 60 KiB of header fields (431),
/// a body of 32 MiB (413), 256 connections, 60 seconds for a request to arrive.
class HttpServer : public QObject
{
public:
    explicit HttpServer(HttpHandler handler, QObject *parent = nullptr);

    /// Port 0 takes a free one. False: errorString() says why.
    bool listen(const QHostAddress &address, quint16 port);
    QString errorString() const { return m_server.errorString(); }
    quint16 port() const { return m_server.serverPort(); }
    QHostAddress address() const { return m_server.serverAddress(); }

private:
    void accept();

    QTcpServer m_server;
    HttpHandler m_handler;
    int m_connections = 0;
};
