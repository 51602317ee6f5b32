// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/KeyServer.h"

#include <QByteArray>

#include <deque>
#include <memory>

struct _XDisplay;
union _XEvent;

namespace platform::linux_
{

/// A connection to the X server for typing alone, with XTEST, XKB and XInput 2. Neither a request
/// that the server refuses nor a server that goes away ends the program: the one is dropped, the
/// other shows in isBroken(). The thread that opened it only.
///
/// Requests are those of the X Window System Protocol, the X Keyboard Extension Protocol (XKB) and
/// the XTEST Extension Protocol. Raw events name the device that they come from (XInput 2 protocol,
/// "RawEvent").
class XKeyServer : public KeyServer
{
public:
    /// Empty when there is no such server, or it lacks one of the three extensions or XTEST's
    /// keyboard. An empty name means $DISPLAY.
    static std::unique_ptr<XKeyServer> open(const QByteArray &displayName);
    ~XKeyServer() override;
    XKeyServer(const XKeyServer &) = delete;
    XKeyServer &operator=(const XKeyServer &) = delete;

    /// Readable when the server has sent something.
    int fileDescriptor() const;
    /// Reads what the server has sent, which nextEvent() then gives.
    void takeEvents();

    bool isBroken() const override { return m_broken; }
    std::optional<Moment> look() override;
    void grab() override;
    void ungrab() override;
    void sendKeys(const std::vector<Keystroke> &keys, std::uint8_t ambientLocks,
                  std::uint8_t lockedBefore) override;
    void lockModifiers(std::uint8_t locked) override;
    bool keysRepeat() override;
    void setKeysRepeat(bool repeat) override;
    void wakeKeyboard() override;
    KeyboardMap readMap() override;
    std::optional<RawMap> readOwnMap() override;
    void changeOwnMap(const std::vector<RawKey> &keys,
                      std::optional<std::pair<int, RawType>> type) override;
    bool hasTypist() override;
    void setTypist(bool isUs) override;
    std::vector<unsigned long> note() override;
    void setNote(const std::vector<unsigned long> &note) override;
    void deleteNote() override;
    bool exists(WindowId window) override;
    WindowId pingableWindow(WindowId window) override;
    std::vector<WindowId> pingableCompanions(WindowId window) override;
    bool hasInputMethod() override { return !inputMethods().empty(); }
    void ping(WindowId window, std::uint32_t number) override;
    void requestFence() override;
    void watch(WindowId focus) override;
    void unwatch() override;
    std::optional<Event> nextEvent() override;

private:
    XKeyServer() = default;

    WindowId root() const;
    unsigned long atom(const char *name) const;
    /// The windows of the input methods that serve this display (XIM_SERVERS, The Input Method
    /// Protocol).
    std::vector<WindowId> inputMethods() const;
    bool answersPings(WindowId window) const;
    void selectRawEvents(bool wanted);
    std::optional<Event> eventFrom(_XEvent &event);

    _XDisplay *m_display = nullptr;
    bool m_broken = false;
    int m_xkbEventBase = 0;
    int m_inputOpcode = 0;
    /// The device that XTEST's keys come from. Its keyboard map is its own; the core keyboard shows
    /// the map of the device that was used last.
    int m_testKeyboard = 0;
    /// A window of ours that is never shown: it owns the typist's mark and gets the fences.
    WindowId m_ownWindow = 0;
    WindowId m_focus = 0;
    unsigned long m_pingAtom = 0;
    std::deque<Event> m_events;
};

} // namespace platform::linux_
