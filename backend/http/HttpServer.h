// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/http/HttpHandler.h"

#include <QHostAddress>
#include <QTcpServer>

#include <list>

class HttpConnection;

/// An HTTP/1.1 server on the event loop of the thread that made it: no thread
/// waits for a slow answer. Connections are kept alive; when a client goes
/// away, the work for its request is cancelled.
///
/// Bounds: a request line of 1 MiB (414 above it), 60 KiB of header fields (431),
/// a body of 32 MiB (413), and those of HttpLimits. When there are too many
/// connections, the one that has been idle longest goes, strangers first.
class HttpServer : public QTcpServer
{
public:
    /// `admission` outlives the server.
    HttpServer(HttpHandler handler, const HttpAdmission &admission, const HttpLimits &limits = {},
               QObject *parent = nullptr);
    ~HttpServer() override;

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void remove(HttpConnection *connection);
    bool makeRoom();

    HttpHandler m_handler;
    const HttpAdmission &m_admission;
    HttpLimits m_limits;
    /// In the order in which they last had something to do.
    std::list<std::unique_ptr<HttpConnection>> m_connections;
};
