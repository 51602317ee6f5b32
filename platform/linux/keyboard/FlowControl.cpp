// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/FlowControl.h"

#include <algorithm>

namespace platform::linux_
{

namespace
{

// Keys in one burst: what goes out between two looks at the focus and the user's modifiers.
constexpr std::size_t burstSize = 48;
// Keys that the client has not taken from the server yet. The map may change once it has.
constexpr std::size_t mostUntaken = 256;
// Keys that the input does not show yet: what a client has to queue (a browser between its
// processes, where tens of thousands end it), and what it can misplace by moving its own focus.
constexpr std::size_t mostUnshown = 384;
// The same for a client of which we only know that it takes the keys, in keys and milliseconds, and
// for one that tells nothing at all.
constexpr std::size_t blindBurstSize = 16;
constexpr qint64 blindPause = 32;
constexpr qint64 deafPause = 80;

// How long things may take, in milliseconds. A browser that lays out tens of thousands of
// characters anew for each key takes ten seconds for what may be on its way; the user can stop it
// with any key.
constexpr qint64 progressLimit = 60000;
// A count that stands still for so long after the last key will not come right: the program has
// changed the text by itself. The one of a page is told by another process than the one that works.
constexpr qint64 settledAfter = 1000;
constexpr qint64 settledAfterInPage = 2500;
// Asking the input costs it time: at most the fifth part, but in a page, where the keys wait for
// it.
constexpr qint64 readingPause = 8;
constexpr qint64 readingShare = 4;

std::size_t left(std::size_t most, std::size_t used)
{
    return most - std::min(most, used);
}

} // namespace

FlowControl::FlowControl(Pings &pings, TypingTarget *target, bool countable, bool oneByOne,
                         const QElapsedTimer &clock)
    : m_pings(pings)
    , m_target(target)
    , m_readBack(target && countable
                     ? ReadBack(target->characterCount(), target->selectedCharacterCount())
                     : ReadBack())
    , m_oneByOne(oneByOne)
    , m_maxUnconfirmed(target ? target->maxUnconfirmedKeys() : std::nullopt)
    , m_clock(clock)
    , m_lastBurst(clock.elapsed())
    , m_lastProgress(clock.elapsed())
{
}

void FlowControl::sent(std::size_t keys, std::size_t utf16Units)
{
    m_sent += keys;
    m_sentUnits += utf16Units;
    if (m_pings.answers())
        m_unanswered.emplace_back(m_pings.send(), m_sent);
    if (m_target)
        m_target->keysSent();
    m_lastBurst = m_lastProgress = m_clock.elapsed();
}

void FlowControl::update(bool wanted)
{
    const qint64 now = m_clock.elapsed();
    const std::size_t before = m_taken + m_shown;
    m_pings.giveUpOnSilence();
    if (!m_pings.answers())
        m_unanswered.clear();
    while (!m_unanswered.empty() && m_pings.answered(m_unanswered.front().first)) {
        m_taken = m_unanswered.front().second;
        m_unanswered.pop_front();
    }
    if (m_readBack.useful()) {
        const bool matters = wanted || m_oneByOne || m_maxUnconfirmed || !m_pings.answers() ||
                             m_sent - m_shown > mostUnshown / 2;
        if (m_sent > m_shown && matters && now >= m_nextReading) {
            const bool replaced = !m_readBack.hasMoved() && m_target->isSelectionReplaced();
            m_readBack.observe(m_target->characterCount(), m_sent, now, replaced);
            m_shown = m_readBack.confirmed();
            const qint64 after = m_clock.elapsed();
            m_nextReading = after;
            if (m_maxUnconfirmed)
                m_nextReading += after - now;
            else if (!m_oneByOne)
                m_nextReading += std::max(readingPause, readingShare * (after - now));
        }
        if (!m_pings.answers())
            m_taken = m_shown;
    } else {
        if (!m_pings.answers() && now - m_lastBurst >= deafPause)
            m_taken = m_sent;
        m_shown = m_taken;
    }
    if (m_taken + m_shown != before)
        m_lastProgress = now;
}

std::size_t FlowControl::room() const
{
    if (m_oneByOne && m_shown < m_sent)
        return 0;
    if (m_maxUnconfirmed && !m_target->isFocusConfirmed())
        return 0;
    const std::size_t unconfirmed = m_maxUnconfirmed.value_or(mostUnshown);
    const std::size_t burst = m_oneByOne ? 1 : burstSize;
    if (m_readBack.useful())
        return std::min(
            {burst, left(mostUntaken, m_sent - m_taken), left(unconfirmed, m_sent - m_shown)});
    const qint64 pause = m_pings.answers() ? blindPause : deafPause;
    const bool waits = m_sent > m_taken || m_clock.elapsed() - m_lastBurst < pause;
    return waits ? 0 : std::min({burst, blindBurstSize, unconfirmed});
}

bool FlowControl::stalled() const
{
    return m_clock.elapsed() - m_lastProgress > progressLimit;
}

bool FlowControl::settledElsewhere() const
{
    return m_readBack.stillFor(m_clock.elapsed()) >
           (m_maxUnconfirmed ? settledAfterInPage : settledAfter);
}

void FlowControl::acceptExcess()
{
    m_readBack.observe(m_target->characterCount(), m_sent, m_clock.elapsed());
    m_readBack.acceptExcess({m_sent, m_sentUnits});
}

} // namespace platform::linux_
