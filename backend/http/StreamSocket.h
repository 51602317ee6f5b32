// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>

/// A connected stream socket on the event loop. Unlike QTcpSocket it can go on writing after the
/// other side has closed its half, so that a client that shuts its half down gets its answer.
/// Thread: the event loop's.
class StreamSocket
{
public:
    /// Takes over the descriptor, which becomes non-blocking. `changed` is called from the event
    /// loop after bytes have come, after the other side has ended its half, after everything
    /// written has left, and after the connection broke. It may destroy the socket.
    StreamSocket(int descriptor, std::function<void()> changed);
    ~StreamSocket();
    StreamSocket(const StreamSocket &) = delete;
    StreamSocket &operator=(const StreamSocket &) = delete;

    /// What has come, up to `max` bytes; what is beyond stays with the system.
    QByteArray take(qsizetype max);
    /// Whether the socket asks for more bytes; the system holds the sender back otherwise.
    void setReading(bool reading);

    void write(const QByteArray &bytes);
    qsizetype bytesToWrite() const { return m_out.size() - m_written; }
    /// Ends our half of the connection once everything has left.
    void endWriting();

    /// The other side sends no more. It may still read.
    bool hasEnded() const { return m_ended; }
    /// The connection is of no use in either direction.
    bool isBroken() const { return m_broken; }
    /// Looks whether the other side has gone altogether: true when a byte sent to it came back as
    /// a reset. Meaningful after something was written.
    bool hasReset();

private:
    void flush();
    void fail();

    int m_descriptor;
    std::function<void()> m_changed;
    QSocketNotifier m_readNotifier;
    QSocketNotifier m_writeNotifier;
    QByteArray m_out;
    qsizetype m_written = 0;
    bool m_ended = false;
    bool m_broken = false;
    bool m_ending = false;
    bool m_reading = true;
};
