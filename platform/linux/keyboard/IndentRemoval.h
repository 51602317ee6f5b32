#pragma once

#include "platform/linux/keyboard/FlowControl.h"
#include "platform/linux/keyboard/Pings.h"

#include <QElapsedTimer>

#include <cstddef>
#include <optional>

namespace platform::linux_
{

/// Editors that start a new line with the last one's indentation would indent a text twice. After a
/// line break this tells what they have added, which BackSpace then deletes key by key, before the
/// line goes on. Made anew for each text. Main thread only.
class IndentRemoval
{
public:
    IndentRemoval(FlowControl &flow, Pings &pings, const QElapsedTimer &clock);

    enum class Step {
        /// There is nothing to delete, or it cannot be deleted and belongs there.
        Done,
        /// The line break, or the last BackSpace, is on its way.
        Wait,
        /// Send BackSpace, then call deletionSent().
        Delete,
    };
    /// What to do when the last key sent is a line break after which there may be indentation.
    Step next();
    void deletionSent();

private:
    FlowControl &m_flow;
    Pings &m_pings;
    const QElapsedTimer &m_clock;
    /// The last line break that is done with, as the number of keys up to it.
    std::size_t m_done = 0;
    /// What there was to delete before the last BackSpace.
    qint64 m_left = 0;
    std::optional<Pings::Ping> m_ping;
    qint64 m_sentAt = 0;
};

} // namespace platform::linux_
