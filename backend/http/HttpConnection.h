// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/http/HttpHandler.h"

#include <QPointer>
#include <QTcpSocket>
#include <QTimer>

class RequestParser;

/// One client's connection: reads a request, hands it to the handler, writes
/// the answer, and goes on with the next. Deletes itself when the client is gone.
class HttpConnection : public QObject
{
public:
    /// Takes over `socket`.
    HttpConnection(QTcpSocket *socket, HttpHandler handler, QObject *parent);
    ~HttpConnection() override;

private:
    enum class State { Reading, Answering, Draining };

    void readSome();
    void parse();
    void refuse(int status, const QByteArray &sentence);
    void dispatch();
    void finish(bool keepAlive);
    void send(const HttpResponse &response, bool keepAlive);
    void drainThenClose();
    void close();

    QTcpSocket *m_socket;
    HttpHandler m_handler;
    std::unique_ptr<RequestParser> m_parser;
    std::unique_ptr<PendingWork> m_work;
    QByteArray m_buffer;
    QTimer m_deadline;
    State m_state = State::Reading;
    qint64 m_drained = 0;
    /// Counts requests, so that an answer cannot reach the wrong one.
    quint64 m_serial = 0;
};
