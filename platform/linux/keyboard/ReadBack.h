#pragma once

#include <QtGlobal>

#include <cstddef>
#include <optional>

namespace platform::linux_
{

/// Tells from the length of the input's text how many of the keys that were sent have arrived. An
/// input may count differently from what its selection promises (a placeholder, an invisible line
/// break), so the first key is sent alone and sets the measure. Times are in milliseconds of any
/// steady clock. A plain value.
class ReadBack
{
public:
    ReadBack() = default;
    /// The count before typing, absent when the input does not say, and how much of it is selected.
    ReadBack(std::optional<qint64> countBefore, qint64 selected);

    enum class State {
        /// The first key has not been seen yet: send no more than that one.
        Measuring,
        Reliable,
        /// The input's count does not follow what is typed.
        Useless,
    };
    State state() const { return m_state; }

    /// Takes a new reading, `sent` keys having been sent by then.
    void observe(std::optional<qint64> count, std::size_t sent, qint64 now);

    /// How many of the sent keys have arrived.
    std::size_t confirmed() const { return m_confirmed; }

    /// By how much the input has grown beyond what was sent.
    std::size_t excess() const { return m_excess; }

private:
    State m_state = State::Useless;
    qint64 m_base = 0;
    qint64 m_last = 0;
    qint64 m_lastChange = 0;
    bool m_timing = false;
    bool m_moved = false;
    std::size_t m_confirmed = 0;
    std::size_t m_excess = 0;
};

} // namespace platform::linux_
