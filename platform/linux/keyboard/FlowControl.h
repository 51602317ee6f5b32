// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/Pings.h"
#include "platform/linux/keyboard/ReadBack.h"
#include "platform/linux/ports/TypingTarget.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <utility>

namespace platform::linux_
{

/// Counts the keys of a text that have arrived, and decides how many may follow: enough to keep the
/// program busy, and no more than its queues can take. One object for each text. Main thread only.
///
/// The program takes a sent key from the server; the answer to a ping shows that. Then the input
/// shows it; the length of its text shows that. Where one of the two counts is unknown, it is taken
/// to equal the other. Where both are unknown, keys are sent at a fixed pace.
class FlowControl
{
public:
    /// `countable` tells whether each key adds one to the input's length,
    /// `oneByOne` whether a key may only be sent once the one before it shows.
    FlowControl(Pings &pings, TypingTarget &target, bool countable, bool oneByOne,
                const Clock &clock);

    /// Counts keys that were just sent and the UTF-16 code units in them.
    void sent(std::size_t keys, std::size_t utf16Units);
    /// Updates the count of what has arrived. Asks the input, which costs it time, only where the
    /// flow depends on the answer, or the caller wants it (`wanted`).
    void update(bool wanted);

    /// How many keys may be sent now.
    std::size_t room() const;
    std::size_t sentKeys() const { return m_sent; }
    bool allTaken() const { return m_taken == m_sent; }
    bool allShown() const { return m_shown == m_sent; }
    /// Keys that the program will not look up any more. That it has taken them is not enough where
    /// more is to be had: with an input method a browser looks them up once more when they come
    /// back from there.
    std::size_t handled() const { return std::min(m_taken, m_shown); }

    /// Whether nothing has moved for so long that the program must have stopped.
    bool stalled() const;
    /// Whether the input has stood still for so long that its text will not come right.
    bool settledElsewhere() const;

    /// Whether the input tells how long its text is.
    bool readsBack() const { return m_readBack.useful(); }
    /// Takes what the input holds beyond what was sent as belonging there; asks it. All keys have
    /// to be shown.
    void acceptExcess();

private:
    Pings &m_pings;
    TypingTarget &m_target;
    ReadBack m_readBack;
    bool m_oneByOne = false;
    /// See TypingTarget::maxUnconfirmedKeys().
    std::optional<std::size_t> m_maxUnconfirmed;
    const Clock &m_clock;

    std::size_t m_sent = 0;
    /// The same in UTF-16 code units.
    std::size_t m_sentUnits = 0;
    std::size_t m_taken = 0;
    std::size_t m_shown = 0;
    /// The ping after each burst that has not been answered yet, and the keys sent until then.
    std::deque<std::pair<Pings::Ping, std::size_t>> m_unanswered;
    Milliseconds m_lastBurst{0};
    Milliseconds m_lastProgress{0};
    Milliseconds m_nextReading{0};
};

} // namespace platform::linux_
