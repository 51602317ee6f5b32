// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/KeyServer.h"

#include <cstdint>
#include <deque>
#include <map>

namespace platform::linux_
{

/// Watches what happens around our own keys while a text is being typed: the user's keys and
/// clicks, the focus, the keyboard map, and the answers to fences and pings. The thread of the
/// connection only, and no call waits.
///
/// A key press is the user's unless it comes from our keyboard and is the next one that we sent.
class InputWatch
{
public:
    explicit InputWatch(KeyServer &server);

    /// Starts to watch, with `focus` as the window that has the keyboard.
    void start(WindowId focus);
    void stop();

    /// Announces a press that we are about to send.
    void expectPress(std::uint8_t keycode) { m_expected.push_back(keycode); }

    /// Announces a ping that we are about to send; the answers to window managers' own pings arrive
    /// in the same way.
    void expectPong(WindowId window, std::uint32_t number) { m_pings[window].sent = number; }

    /// Handles every event that has arrived.
    void poll();

    bool userActed() const { return m_userActed; }
    bool focusLost() const { return m_focusLost; }
    bool mapChanged() const { return m_mapChanged; }
    bool fencePassed() const { return m_fencePassed; }
    /// Number of the last ping to that window that was answered; 0 when none was.
    std::uint32_t lastPong(WindowId window) const;

    void clearFence() { m_fencePassed = false; }
    /// Forgets changes of the map that were our own.
    void clearMapChange() { m_mapChanged = false; }

private:
    void handle(const KeyServer::KeyPressed &key);
    void handle(const KeyServer::ButtonPressed &press);
    void handle(const KeyServer::FocusLeft &) { m_focusLost = true; }
    void handle(const KeyServer::MapChanged &) { m_mapChanged = true; }
    void handle(const KeyServer::Fence &) { m_fencePassed = true; }
    void handle(const KeyServer::Pong &pong);

    KeyServer &m_server;
    bool m_active = false;
    std::deque<std::uint8_t> m_expected;
    bool m_userActed = false;
    bool m_focusLost = false;
    bool m_mapChanged = false;
    bool m_fencePassed = false;
    struct Pings {
        std::uint32_t sent = 0;
        std::uint32_t answered = 0;
    };
    std::map<WindowId, Pings> m_pings;
};

} // namespace platform::linux_
