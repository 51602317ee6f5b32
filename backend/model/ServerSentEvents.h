// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>

/// Reads a stream of server-sent events (the text/event-stream format of the
/// HTML standard) as it comes, and yields each event's data. Other fields and
/// comments are skipped. Thread: one.
class ServerSentEvents
{
public:
    /// Some servers send a whole answer as one event.
    static constexpr qsizetype maxEvent = 16 * 1024 * 1024;

    /// The data of the events that `bytes` completes.
    QList<QByteArray> feed(const QByteArray &bytes);
    /// The stream has ended: yields an event that lacks its closing blank line.
    QList<QByteArray> finish();
    /// An event grew beyond maxEvent; nothing more is read.
    bool overflowed() const { return m_overflowed; }

private:
    void takeLine(const QByteArray &line, QList<QByteArray> &events);

    QByteArray m_line;
    QByteArray m_data;
    bool m_hasData = false;
    bool m_skipLineFeed = false;
    bool m_overflowed = false;
};
