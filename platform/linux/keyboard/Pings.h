// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/Clock.h"
#include "platform/linux/keyboard/InputWatch.h"
#include "platform/linux/keyboard/KeyServer.h"

#include <cstdint>

namespace platform::linux_
{

/// Pings to the program that is typed into (_NET_WM_PING, Extended Window Manager Hints): it
/// answers one once it has taken every event before it from the server. The thread of the
/// connection only; no call waits.
class Pings
{
public:
    Pings(KeyServer &server, InputWatch &watch, const Clock &clock);

    /// How long an answer may take.
    static constexpr Milliseconds limit{4000};

    /// For a new text: the window at which the program answers, 0 when it does not.
    void begin(WindowId window);

    /// Whether there is such a window; no longer once the program has left the first pings without
    /// an answer for too long. Some say that they answer and never do.
    bool answers() const { return m_window != 0; }
    void giveUpOnSilence();

    /// What a ping is known by.
    struct Ping {
        WindowId window = 0;
        std::uint32_t number = 0;
    };
    /// Pings the program at its own window, or at another one that answers.
    Ping send() { return send(m_window); }
    Ping send(WindowId window);
    bool answered(const Ping &ping) const;

private:
    KeyServer &m_server;
    InputWatch &m_watch;
    const Clock &m_clock;
    WindowId m_window = 0;
    std::uint32_t m_last = 0;
    /// The last ping of the text before.
    std::uint32_t m_before = 0;
    Milliseconds m_answeredAt{0};
};

} // namespace platform::linux_
