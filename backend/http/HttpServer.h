// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "HttpMessage.h"

#include <QHostAddress>
#include <QTcpServer>
#include <functional>
#include <memory>

/// Work that an answer waits for. Destroying it cancels the work.
class PendingWork
{
public:
    PendingWork() = default;
    PendingWork(const PendingWork &) = delete;
    PendingWork &operator=(const PendingWork &) = delete;
    virtual ~PendingWork() = default;
};

/// An HTTP/1.1 server on the event loop of the thread that made it: no thread
/// waits for a slow answer. Connections are kept alive; when a client goes
/// away, the work for its request is cancelled.
///
/// Bounds: a request line of 1 MiB (414 above it), 60 KiB of header fields (431),
/// a body of 32 MiB (413), 256 connections, 60 seconds for a request to arrive.
class HttpServer : public QObject
{
public:
    using Respond = std::function<void(HttpResponse)>;
    /// Answers by calling `respond` once, at once or later from the event loop.
    /// Work that is still going on is returned; otherwise null.
    using Handler = std::function<std::unique_ptr<PendingWork>(const HttpRequest &, Respond)>;

    static constexpr qsizetype maximumRequestLine = 1024 * 1024;

    explicit HttpServer(Handler handler, QObject *parent = nullptr);

    /// Port 0 takes a free one. False: errorString() says why.
    bool listen(const QHostAddress &address, quint16 port);
    QString errorString() const { return m_server.errorString(); }
    quint16 port() const { return m_server.serverPort(); }
    QHostAddress address() const { return m_server.serverAddress(); }

private:
    void accept();

    QTcpServer m_server;
    Handler m_handler;
    int m_connections = 0;
};
