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
constexpr std::size_t maxUntaken = 256;
// Keys that the input does not show yet: what a client has to queue (a browser between its
// processes, where tens of thousands end it), and what it can misplace by moving its own focus.
constexpr std::size_t maxUnshown = 384;
// The same for a client of which we only know that it takes the keys, and
// for one that tells nothing at all.
constexpr std::size_t blindBurstSize = 16;
constexpr Milliseconds blindPause{32};
constexpr Milliseconds deafPause{80};

// How long things may take. A browser that lays out tens of thousands of
// characters again for each key takes ten seconds for what may be on its way; the user can stop it
// with any key.
constexpr Milliseconds progressLimit{60000};
// A count that stands still for so long after the last key will not come right: the program has
// changed the text by itself. The one of a page is told by another process than the one that works.
// A program that is busy tells the same count seldom; it may still have keys to handle.
constexpr Milliseconds settledAfter{1000};
constexpr Milliseconds settledAfterInPage{2500};
constexpr int settledAnswers = 3;
// Asking the input costs it time: at most the fifth part, but in a page, where the keys wait for
// it.
constexpr Milliseconds readingPause{8};
constexpr int readingShare = 4;

std::size_t left(std::size_t most, std::size_t used)
{
    return most - std::min(most, used);
}

} // namespace

FlowControl::FlowControl(Pings &pings, TypingTarget &target, bool countable, bool oneByOne,
                         const Clock &clock)
    : m_pings(pings)
    , m_target(target)
    , m_readBack(countable ? ReadBack(target.characterCount(), target.selectedCharacterCount())
                           : ReadBack())
    , m_oneByOne(oneByOne)
    , m_maxUnconfirmed(target.maxUnconfirmedKeys())
    , m_clock(clock)
    , m_lastBurst(clock.now())
    , m_lastProgress(clock.now())
{
}

void FlowControl::sent(std::size_t keys, std::size_t utf16Units)
{
    m_sent += keys;
    m_sentUnits += utf16Units;
    if (m_pings.answers())
        m_unanswered.emplace_back(m_pings.send(), m_sent);
    m_target.keysSent();
    m_lastBurst = m_lastProgress = m_clock.now();
}

void FlowControl::update(bool wanted)
{
    const Milliseconds now = m_clock.now();
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
                             m_sent - m_shown > maxUnshown / 2;
        if (m_sent > m_shown && matters && now >= m_nextReading) {
            const bool replaced = !m_readBack.hasMoved() && m_target.isSelectionReplaced();
            m_readBack.observe(m_target.characterCount(), m_sent, now, replaced);
            m_shown = m_readBack.confirmed();
            const Milliseconds after = m_clock.now();
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
    if (m_maxUnconfirmed && !m_target.isFocusConfirmed())
        return 0;
    const std::size_t unconfirmed = m_maxUnconfirmed.value_or(maxUnshown);
    const std::size_t burst = m_oneByOne ? 1 : burstSize;
    if (m_readBack.useful())
        return std::min(
            {burst, left(maxUntaken, m_sent - m_taken), left(unconfirmed, m_sent - m_shown)});
    const Milliseconds pause = m_pings.answers() ? blindPause : deafPause;
    const bool waits = m_sent > m_taken || m_clock.now() - m_lastBurst < pause;
    return waits ? 0 : std::min({burst, blindBurstSize, unconfirmed});
}

bool FlowControl::stalled() const
{
    return m_clock.now() - m_lastProgress > progressLimit;
}

bool FlowControl::settledElsewhere() const
{
    return m_readBack.sameAnswers() >= settledAnswers &&
           m_readBack.stillFor(m_clock.now()) >
               (m_maxUnconfirmed ? settledAfterInPage : settledAfter);
}

void FlowControl::acceptExcess()
{
    m_readBack.observe(m_target.characterCount(), m_sent, m_clock.now());
    m_readBack.acceptExcess({m_sent, m_sentUnits});
}

} // namespace platform::linux_
