#include "platform/linux/keyboard/ReadBack.h"

#include <algorithm>

namespace platform::linux_
{

namespace
{

// A count that was not what the selection promised is believed once it has stood still for so long.
constexpr qint64 settledAfter = 150;
// A count that never moved is given up.
constexpr qint64 givenUpAfter = 2000;

} // namespace

ReadBack::ReadBack(std::optional<qint64> countBefore, qint64 selected)
{
    if (!countBefore)
        return;
    m_state = State::Measuring;
    m_base = *countBefore - selected;
    m_last = *countBefore;
}

void ReadBack::observe(std::optional<qint64> count, std::size_t sent, qint64 now)
{
    if (m_state == State::Useless || sent == 0)
        return;
    if (!m_timing) {
        m_timing = true;
        m_lastChange = now;
    }
    if (count && *count != m_last) {
        m_last = *count;
        m_lastChange = now;
        m_moved = true;
    }
    if (m_state == State::Measuring) {
        const auto expected = m_base + static_cast<qint64>(sent);
        const qint64 still = now - m_lastChange;
        if (count && *count == expected) {
            m_state = State::Reliable;
        } else if (count && m_moved && still >= settledAfter) {
            m_state = State::Reliable;
            m_base = *count - static_cast<qint64>(sent);
        } else if (still >= givenUpAfter) {
            m_state = State::Useless;
        }
    }
    if (m_state != State::Reliable || !count)
        return;
    const auto arrived = static_cast<std::size_t>(std::max<qint64>(0, *count - m_base));
    m_excess = arrived > sent ? arrived - sent : 0;
    m_confirmed = std::max(m_confirmed, std::min(arrived, sent));
}

} // namespace platform::linux_
