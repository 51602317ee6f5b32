// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/ReadBack.h"

#include <algorithm>

namespace platform::linux_
{

namespace
{

// A count that has not moved at all for so long is given up. A browser on a busy machine may handle
// all keys that are on their way before it reports the first.
constexpr Milliseconds givenUpAfter{3000};
constexpr Milliseconds maxForKey{20};
// A count that still stands so long after the selection went is the new text's.
constexpr Milliseconds replacedPause{40};

} // namespace

ReadBack::ReadBack(std::optional<qint64> countBefore, qint64 selected)
{
    if (!countBefore)
        return;
    m_useful = true;
    m_last = *countBefore;
    m_base = *countBefore - selected;
    // An empty rich text input counts a line break of its own, which the first character replaces.
    if (m_base == 1 && selected == 0)
        m_base = 0;
}

qint64 ReadBack::excess(Sent sent) const
{
    const qint64 arrived = m_last - m_base;
    const auto units = static_cast<qint64>(sent.utf16Units);
    const qint64 expected = arrived >= units ? units : static_cast<qint64>(sent.codePoints);
    return m_moved ? std::max<qint64>(0, arrived - expected) : 0;
}

void ReadBack::observe(std::optional<qint64> count, std::size_t sent, Milliseconds now,
                       bool replaced)
{
    if (!m_useful || sent == 0)
        return;
    if (!m_lastChange)
        m_lastChange = now;
    if (count && *count != m_last) {
        m_last = *count;
        m_lastChange = now;
        m_sameAnswers = 0;
        m_moved = true;
    } else if (count) {
        ++m_sameAnswers;
    }
    // A text that is as long as what it replaces leaves the count where it was. The two may not
    // have been asked at the same moment.
    if (replaced && !m_moved) {
        m_replacedSince = m_replacedSince.value_or(now);
        if (now - *m_replacedSince >= replacedPause) {
            m_moved = true;
            m_lastChange = now;
        }
    }
    const Milliseconds patience = givenUpAfter + maxForKey * static_cast<qint64>(sent);
    if (!m_moved && now - *m_lastChange >= patience) {
        m_useful = false;
        return;
    }
    // Until then a selection still counts.
    if (!count || !m_moved)
        return;
    const auto arrived = static_cast<std::size_t>(std::max<qint64>(0, *count - m_base));
    m_confirmed = std::max(m_confirmed, std::min(arrived, sent));
}

} // namespace platform::linux_
