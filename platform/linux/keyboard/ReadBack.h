// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/Clock.h"

#include <QtGlobal>

#include <cstddef>
#include <optional>

namespace platform::linux_
{

/// Computes from the length of the input's text how many of the sent keys have arrived in it. Times
/// are of any steady clock. A plain value.
class ReadBack
{
public:
    ReadBack() = default;
    /// The count before typing, absent when the input does not say, and how much of it is selected.
    ReadBack(std::optional<qint64> countBefore, qint64 selected);

    /// Takes a new reading. `sent`: the number of keys that were sent before it. `replaced`: the
    /// selection was gone already when the input was asked for the count.
    void observe(std::optional<qint64> count, std::size_t sent, Milliseconds now,
                 bool replaced = false);

    /// Whether the input has followed the typing by now.
    bool hasMoved() const { return m_moved; }

    /// False when the input does not say how long its text is, or its answer has not followed the
    /// typing for a long time, as with rich text that is spread over several elements.
    bool useful() const { return m_useful; }

    /// How many of the sent keys have arrived.
    std::size_t confirmed() const { return m_confirmed; }

    /// What was sent, in both units in which inputs count their text (Qt counts in UTF-16).
    struct Sent {
        std::size_t codePoints = 0;
        std::size_t utf16Units = 0;
    };
    /// By how much the input has grown beyond what was sent, once all of it has arrived: what an
    /// editor has added by itself. Where the unit is unknown, the smaller of the two results.
    qint64 excess(Sent sent) const;
    /// Takes that as belonging there.
    void acceptExcess(Sent sent) { m_base += excess(sent); }

    /// How long the count has not changed.
    Milliseconds stillFor(Milliseconds now) const
    {
        return m_lastChange ? now - *m_lastChange : Milliseconds(0);
    }

    /// How many answers since then had the same count.
    int sameAnswers() const { return m_sameAnswers; }

private:
    bool m_useful = false;
    qint64 m_base = 0;
    qint64 m_last = 0;
    std::optional<Milliseconds> m_lastChange;
    int m_sameAnswers = 0;
    bool m_moved = false;
    std::optional<Milliseconds> m_replacedSince;
    std::size_t m_confirmed = 0;
};

} // namespace platform::linux_
