// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/ServerSentEvents.h"

QList<QByteArray> ServerSentEvents::feed(const QByteArray &bytes)
{
    QList<QByteArray> events;
    for (const char c : bytes) {
        if (m_overflowed)
            break;
        // A line ends with CR LF, LF or CR, and a CR LF may come in two pieces.
        const bool secondHalf = m_skipLineFeed && c == '\n';
        m_skipLineFeed = c == '\r';
        if (secondHalf)
            continue;
        if (c == '\n' || c == '\r') {
            takeLine(m_line, events);
            m_line.clear();
        } else {
            m_line += c;
        }
        m_overflowed = m_line.size() + m_data.size() > maxEvent;
    }
    return events;
}

QList<QByteArray> ServerSentEvents::finish()
{
    QList<QByteArray> events;
    if (!m_overflowed) {
        takeLine(m_line, events);
        takeLine({}, events);
    }
    m_line.clear();
    return events;
}

void ServerSentEvents::takeLine(const QByteArray &line, QList<QByteArray> &events)
{
    if (line.isEmpty()) {
        if (m_hasData)
            events += m_data;
        m_data.clear();
        m_hasData = false;
        return;
    }
    if (!line.startsWith("data:") && line != "data")
        return;
    QByteArray value = line.mid(5);
    if (value.startsWith(' '))
        value.remove(0, 1);
    if (m_hasData)
        m_data += '\n';
    m_data += value;
    m_hasData = true;
}
