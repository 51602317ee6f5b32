// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/XConnection.h"

#include <cstdint>
#include <deque>
#include <map>

namespace platform::linux_
{

/// Watches what happens around our own keys while a text is being typed: the user's keys and
/// clicks, the focus, the keyboard map, and the answers to fences and pings. Reads the events of
/// the connection; its thread only, and no call waits.
///
/// Raw events name the device that they come from (XInput 2 protocol, "RawEvent"). A key press is
/// the user's unless it comes from XTEST's keyboard and is the next one that we sent.
class InputWatch
{
public:
    explicit InputWatch(XConnection &connection);

    /// Starts to watch, with `focus` as the window that has the keyboard.
    void start(XWindow focus);
    void stop();

    /// Tells of a press that we are about to send.
    void expectPress(std::uint8_t keycode) { m_expected.push_back(keycode); }

    /// Tells of a ping that we are about to send; the answers to window managers' own pings arrive
    /// in the same way.
    void expectPong(XWindow window, std::uint32_t number) { m_pings[window].sent = number; }

    /// Handles every event that has arrived.
    void poll();

    bool userActed() const { return m_userActed; }
    bool focusLost() const { return m_focusLost; }
    bool mapChanged() const { return m_mapChanged; }
    bool fencePassed() const { return m_fencePassed; }
    /// Number of the last ping to that window that was answered; 0 when none was.
    std::uint32_t lastPong(XWindow window) const;

    void clearFence() { m_fencePassed = false; }
    /// Forgets changes of the map that were our own.
    void clearMapChange() { m_mapChanged = false; }

private:
    void handleRaw(int type, int sourceDevice, int detail);
    void handlePong(XWindow window, std::uint32_t number);

    XConnection &m_connection;
    XWindow m_focus = 0;
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
    std::map<XWindow, Pings> m_pings;
    unsigned long m_pingAtom = 0;
};

} // namespace platform::linux_
