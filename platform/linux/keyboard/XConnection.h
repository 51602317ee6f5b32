// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/KeyboardMap.h"

#include <QByteArray>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

struct _XDisplay;

namespace platform::linux_
{

using XWindow = unsigned long;

/// A connection to the X server for typing alone, with XTEST, XKB and XInput 2. Neither a request
/// that the server refuses nor a server that goes away ends the program: the one is dropped, the
/// other shows in broken(). The thread that opened it only.
///
/// Requests are those of the X Window System Protocol, the X Keyboard Extension Protocol (XKB) and
/// the XTEST Extension Protocol.
class XConnection
{
public:
    /// Empty when there is no such server, or it lacks one of the three extensions or XTEST's
    /// keyboard. An empty name means $DISPLAY.
    static std::unique_ptr<XConnection> open(const QByteArray &displayName);
    ~XConnection();
    XConnection(const XConnection &) = delete;
    XConnection &operator=(const XConnection &) = delete;

    _XDisplay *display() const { return m_display; }
    bool broken() const { return m_broken; }
    int fileDescriptor() const;
    int xkbEventBase() const { return m_xkbEventBase; }
    int inputOpcode() const { return m_inputOpcode; }
    /// The device that XTEST's keys come from. Its keyboard map is its own; the core keyboard shows
    /// the map of the device that was used last.
    int testKeyboard() const { return m_testKeyboard; }
    XWindow root() const;
    /// A window of ours that is never shown: the owner of selections and the sender of pings.
    XWindow ownWindow() const { return m_ownWindow; }
    unsigned long atom(const char *name) const;

    /// What the keyboard and the focus are at one moment.
    struct Moment {
        XWindow focus = 0;
        /// Modifiers held down, or latched for the next key.
        std::uint8_t heldModifiers = 0;
        std::uint8_t latchedModifiers = 0;
        std::uint8_t lockedModifiers = 0;
        int group = 0;
        bool keyHeld = false;
    };
    /// One round trip to the server for each of the three questions.
    std::optional<Moment> look() const;

    KeyboardMap readMap() const;

    /// Makes focus check and keys one step: no other client's request comes between.
    void grabServer();
    void ungrabServer();

    /// Sends the keys. Each is pressed and released at once, while exactly its own modifiers and
    /// `ambientLocks` are locked; afterwards `lockedBefore` are. Without a round trip.
    void sendKeys(const std::vector<Keystroke> &keys, std::uint8_t ambientLocks,
                  std::uint8_t lockedBefore);

    /// Makes exactly these modifiers locked.
    void lockModifiers(std::uint8_t locked);

    /// The windows of the input methods that serve this display (XIM_SERVERS, The Input Method
    /// Protocol).
    std::vector<XWindow> inputMethods() const;

    /// Whether a key that stays down types its character again and again: the server's setting,
    /// for all keyboards.
    bool keysRepeat() const;
    void setKeysRepeat(bool repeat);

    /// Lets go of a key that is not down: clients see nothing, but the server switches to XTEST's
    /// keyboard and tells them so now rather than at the first character.
    void wakeTestKeyboard();

    bool exists(XWindow window) const;

    /// The window at or above `window` whose client answers pings (_NET_WM_PING, Extended Window
    /// Manager Hints); 0 when there is none.
    XWindow pingableWindow(XWindow window) const;
    /// Windows that answer pings in the other places where `window`'s keys may be looked up: its
    /// process's other connections to the server, and the input methods.
    ///
    /// A process that has several connections shows its own windows from one of them. What is to be
    /// found of the others are the windows that toolkits keep as leader of a group
    /// (WM_CLIENT_LEADER, Inter-Client Communication Conventions Manual): children of the root
    /// window, never shown.
    std::vector<XWindow> pingableCompanions(XWindow window) const;
    /// Asks that window's client to answer as soon as it has handled all events before this one.
    void ping(XWindow window, std::uint32_t number);

    /// Asks the server for an event as soon as it handles our requests again; no other client holds
    /// it then.
    void requestFence();

    void flush();

private:
    XConnection() = default;

    bool answersPings(XWindow window) const;

    _XDisplay *m_display = nullptr;
    bool m_broken = false;
    int m_xkbEventBase = 0;
    int m_inputOpcode = 0;
    int m_testKeyboard = 0;
    XWindow m_ownWindow = 0;
};

} // namespace platform::linux_
