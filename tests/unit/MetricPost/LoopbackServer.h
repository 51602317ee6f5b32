// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QThread>

#include <functional>
#include <mutex>

namespace metricpost::test
{

/// An HTTP server on the loopback address with a thread of its own, for clients that block. It
/// keeps every byte of each request and answers with the bytes that the test wants, so that it
/// can also break the protocol.
class LoopbackServer
{
public:
    enum class Then { KeepOpen, Close, Reset };
    struct Answer {
        QByteArray bytes;
        Then then = Then::KeepOpen;
    };
    /// The number counts from 1. Called on the server's thread.
    using Behaviour = std::function<Answer(int number)>;

    explicit LoopbackServer(Behaviour behaviour);
    ~LoopbackServer();

    /// The same bytes to each request; none leave the client waiting.
    static Behaviour always(const QByteArray &bytes);

    QString url() const;
    QList<QByteArray> requests() const;

    /// A whole response with a Content-Length.
    static QByteArray response(int status, const QByteArray &body,
                               const QByteArray &moreHeaders = {});

private:
    class Server;

    const Behaviour m_behaviour;
    quint16 m_port = 0;
    mutable std::mutex m_mutex;
    QList<QByteArray> m_requests;
    QThread m_thread;
};

/// What follows the first empty line.
QByteArray bodyOf(const QByteArray &request);
QByteArray gunzip(const QByteArray &data);

} // namespace metricpost::test
