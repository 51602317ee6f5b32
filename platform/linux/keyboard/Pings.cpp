// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/Pings.h"

namespace platform::linux_
{

Pings::Pings(XConnection &connection, InputWatch &watch, const QElapsedTimer &clock)
    : m_connection(connection)
    , m_watch(watch)
    , m_clock(clock)
{
}

// The numbers go on, so that a late answer belongs to no ping of another text.
void Pings::begin(XWindow window)
{
    m_window = window;
    m_before = m_last;
    m_answeredAt = m_clock.elapsed();
}

void Pings::giveUpOnSilence()
{
    if (m_last == m_before || m_watch.lastPong(m_window) > m_before)
        m_answeredAt = m_clock.elapsed();
    if (m_clock.elapsed() - m_answeredAt > limit)
        m_window = 0;
}

Pings::Ping Pings::send(XWindow window)
{
    m_watch.expectPong(window, ++m_last);
    m_connection.ping(window, m_last);
    m_connection.flush();
    return {window, m_last};
}

bool Pings::answered(const Ping &ping) const
{
    return m_watch.lastPong(ping.window) >= ping.number;
}

} // namespace platform::linux_
