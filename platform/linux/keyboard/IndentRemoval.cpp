#include "platform/linux/keyboard/IndentRemoval.h"

namespace platform::linux_
{

namespace
{

// Indentation that is still there so many milliseconds after the key that deletes it cannot be
// deleted. The answered ping need not mean that the key has been handled: a toolkit may answer
// while keys wait in a queue of its own.
constexpr qint64 patience = 3000;

} // namespace

IndentRemoval::IndentRemoval(FlowControl &flow, Pings &pings, const QElapsedTimer &clock)
    : m_flow(flow)
    , m_pings(pings)
    , m_clock(clock)
{
}

IndentRemoval::Step IndentRemoval::next()
{
    if (m_done == m_flow.sentKeys() || !m_pings.answers() || !m_flow.readsBack())
        return Step::Done;
    if (!m_flow.allShown() || !m_flow.allTaken() || (m_ping && !m_pings.answered(*m_ping)))
        return Step::Wait;
    const qint64 excess = m_flow.excess();
    const bool unchanged = m_left > 0 && excess >= m_left;
    if (unchanged && m_clock.elapsed() - m_sentAt < patience)
        return Step::Wait;
    if (excess == 0 || unchanged) {
        m_flow.acceptExcess();
        m_done = m_flow.sentKeys();
        m_left = 0;
        return Step::Done;
    }
    m_left = excess;
    return Step::Delete;
}

void IndentRemoval::deletionSent()
{
    m_sentAt = m_clock.elapsed();
    m_ping = m_pings.send();
}

} // namespace platform::linux_
