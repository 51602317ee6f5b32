// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/BorrowedKeys.h"
#include "platform/linux/keyboard/InputWatch.h"
#include "platform/linux/keyboard/Pings.h"
#include "platform/linux/keyboard/TypingPlan.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace platform::linux_
{

/// Maps the characters of a text's segments to the borrowed keys, one bank after the other: those
/// of the segments to come while the keys of others are on their way. One object for each text.
/// Main thread only; no call waits longer than the server takes for a change of the map.
class CharacterBanks
{
public:
    /// `companions` are the other windows that have to answer a ping before the program is known to
    /// follow a new map.
    CharacterBanks(KeyServer &server, InputWatch &watch, BorrowedKeys &borrowed, Pings &pings,
                   std::vector<Segment> segments, std::vector<WindowId> companions,
                   const Clock &clock);

    /// Moves on to the segment of the key with this index.
    void reach(std::size_t key);
    /// Maps banks again that hold nothing but keys which the program has `handled`, and takes note
    /// of what it has followed.
    void update(std::size_t handled);

    /// Whether the keys of the current segment can be typed, and where they end.
    bool ready() const;
    std::size_t end() const { return m_segments[m_current].end; }
    std::optional<Keystroke> keyFor(char32_t codePoint) const;

    /// Whether a bank would be mapped if the program had handled more keys.
    bool waiting() const { return m_waiting; }

private:
    /// What a bank of borrowed keys holds.
    struct Bank {
        std::optional<std::size_t> segment;
        /// Whether the program knows that.
        bool settled = true;
        Milliseconds mappedAt{0};
        std::vector<Pings::Ping> pings;
    };

    std::vector<std::size_t> mappable(std::size_t handled);
    void map(const std::vector<std::size_t> &segments);
    void settle(Bank &bank);
    Bank &bankOf(std::size_t segment) { return m_banks[segment % m_banks.size()]; }
    const Bank &bankOf(std::size_t segment) const { return m_banks[segment % m_banks.size()]; }
    std::optional<int> bankNumber(std::size_t segment) const;

    KeyServer &m_server;
    InputWatch &m_watch;
    BorrowedKeys &m_borrowed;
    Pings &m_pings;
    std::vector<Segment> m_segments;
    std::vector<WindowId> m_companions;
    const Clock &m_clock;
    std::vector<Bank> m_banks;
    std::size_t m_current = 0;
    bool m_waiting = false;
};

} // namespace platform::linux_
