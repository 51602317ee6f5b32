// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/Pings.h"

namespace platform::linux_
{

Pings::Pings(KeyServer &server, InputWatch &watch, const Clock &clock)
    : m_server(server)
    , m_watch(watch)
    , m_clock(clock)
{
}

// The numbers go on, so that a late answer belongs to no ping of another text.
void Pings::begin(WindowId window)
{
    m_window = window;
    m_before = m_last;
    m_answeredAt = m_clock.now();
}

void Pings::giveUpOnSilence()
{
    if (m_last == m_before || m_watch.lastPong(m_window) > m_before)
        m_answeredAt = m_clock.now();
    if (m_clock.now() - m_answeredAt > limit)
        m_window = 0;
}

Pings::Ping Pings::send(WindowId window)
{
    m_watch.expectPong(window, ++m_last);
    m_server.ping(window, m_last);
    return {window, m_last};
}

bool Pings::answered(const Ping &ping) const
{
    return m_watch.lastPong(ping.window) >= ping.number;
}

} // namespace platform::linux_
