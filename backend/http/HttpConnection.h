// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/http/HttpHandler.h"
#include "backend/http/LiveBody.h"
#include "backend/http/StreamSocket.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <optional>

class RequestParser;

/// One client's connection: reads a request, hands it to the handler, writes the answer, and goes
/// on with the next. When the client leaves, the work for its request is cancelled at once.
/// Thread: the event loop's.
class HttpConnection : public QObject
{
    Q_OBJECT

public:
    /// Takes over the socket `descriptor`. `admission` outlives the connection.
    HttpConnection(int descriptor, HttpHandler handler, const HttpAdmission &admission,
                   const HttpLimits &limits);
    ~HttpConnection() override;

    /// No request is being answered.
    bool isIdle() const { return m_state != State::Answering; }
    bool isAdmitted() const { return m_admitted; }

Q_SIGNALS:
    /// A request was answered, and the connection waits for the next.
    void idle();
    /// The connection has ended. Emitted once; the object can be destroyed later.
    void closed();

private:
    enum class State { Reading, Answering, Draining, Closed };

    void socketChanged();
    void readSome();
    void parse();
    bool isStrangerTooLong();
    void refuse(int status, const QByteArray &sentence);
    void dispatch();
    void take(const HttpPiece &piece);
    void complete(const HttpResponse &response);
    void finish();
    void pad();
    void probe();
    void writeNothing();
    void send(const HttpResponse &response);
    void sendLiveHead();
    void drainThenClose();
    void close();

    const HttpAdmission &m_admission;
    HttpLimits m_limits;
    HttpHandler m_handler;
    std::unique_ptr<RequestParser> m_parser;
    std::unique_ptr<PendingWork> m_work;
    QByteArray m_buffer;
    QTimer m_deadline;
    QTimer m_silence;
    QTimer m_probing;
    State m_state = State::Reading;
    bool m_admitted = false;
    qint64 m_drained = 0;
    /// Counts requests, so that an answer cannot reach the wrong one.
    quint64 m_serial = 0;

    // The request that is being answered.
    bool m_keepAlive = false;
    bool m_isHead = false;
    bool m_takesChunks = false;
    bool m_prefersLive = false;
    std::optional<LiveBody> m_live;

    /// Last: its callbacks use everything above.
    StreamSocket m_socket;
};
