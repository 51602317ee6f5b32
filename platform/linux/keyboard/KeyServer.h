// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/KeyboardMap.h"

#include <array>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace platform::linux_
{

/// A window's number at the X server.
using WindowId = unsigned long;

/// The port to the X server: everything that typing asks of it. Tests have one that keeps a
/// keyboard map and a program of its own. The thread that opened it only; no call waits for another
/// client.
class KeyServer
{
public:
    virtual ~KeyServer() = default;

    /// True once the server is gone; every other call then does nothing.
    virtual bool isBroken() const = 0;

    /// What the keyboard and the focus are at one moment.
    struct Moment {
        WindowId focus = 0;
        /// Modifiers held down, or latched for the next key.
        std::uint8_t heldModifiers = 0;
        std::uint8_t lockedModifiers = 0;
        int group = 0;
        bool keyHeld = false;
    };
    /// Waits for the server's answer. Events that the server sent before are there afterwards.
    virtual std::optional<Moment> look() = 0;

    /// Until ungrab(), no other client's request is handled.
    virtual void grab() = 0;
    virtual void ungrab() = 0;

    /// Sends the keys. Each is pressed and released at once, while exactly its own modifiers and
    /// `ambientLocks` are locked; afterwards `lockedBefore` are. Without a round trip.
    virtual void sendKeys(const std::vector<Keystroke> &keys, std::uint8_t ambientLocks,
                          std::uint8_t lockedBefore) = 0;
    /// Makes exactly these modifiers locked.
    virtual void lockModifiers(std::uint8_t locked) = 0;
    /// Whether a key that stays down types its character again and again, on all keyboards.
    virtual bool keysRepeat() = 0;
    virtual void setKeysRepeat(bool repeat) = 0;
    /// Lets go of a key that is not down: clients see nothing, but the server switches to our
    /// keyboard and tells them so now rather than at the first character.
    virtual void wakeKeyboard() = 0;

    /// The keyboard map that clients see.
    virtual KeyboardMap readMap() = 0;

    /// A key, or a key type, of our own keyboard as the server has it (XKB protocol, "Key Types"
    /// and "Key Symbol Map"), to be put back later.
    struct RawKey {
        static constexpr std::size_t maxGroups = 4;
        std::uint8_t keycode = 0;
        /// How many groups the key has, and what holds for others.
        std::uint8_t groupInfo = 0;
        std::uint8_t width = 0;
        std::array<std::uint8_t, maxGroups> types{};
        std::vector<unsigned long> keysyms;

        int groups() const { return groupInfo & 0x0f; }
        friend bool operator==(const RawKey &, const RawKey &) = default;
    };
    struct RawType {
        struct Entry {
            unsigned long active = 1;
            unsigned long level = 0;
            unsigned long realModifiers = 0;
            unsigned long virtualModifiers = 0;
            unsigned long preservedReal = 0;
            unsigned long preservedVirtual = 0;
            friend bool operator==(const Entry &, const Entry &) = default;
        };
        unsigned long realModifiers = 0;
        unsigned long virtualModifiers = 0;
        bool preserves = false;
        std::vector<Entry> entries;
        friend bool operator==(const RawType &, const RawType &) = default;
    };
    struct RawMap {
        /// By keycode; those below the first one are empty.
        std::vector<RawKey> keys;
        std::vector<RawType> types;
    };
    virtual std::optional<RawMap> readOwnMap() = 0;
    /// Changes these keys, and this type if there is one, in one step. What another client has
    /// changed elsewhere in the map stays.
    virtual void changeOwnMap(const std::vector<RawKey> &keys,
                              std::optional<std::pair<int, RawType>> type) = 0;

    /// Whether a client marks itself as the one that types; the mark ends with its connection.
    virtual bool hasTypist() = 0;
    virtual void setTypist(bool isUs) = 0;
    /// A note that stays at the server when we end without deleting it; empty when there is none.
    virtual std::vector<unsigned long> note() = 0;
    virtual void setNote(const std::vector<unsigned long> &note) = 0;
    virtual void deleteNote() = 0;

    virtual bool exists(WindowId window) = 0;
    /// The window at or above `window` whose client answers pings (_NET_WM_PING, Extended Window
    /// Manager Hints); 0 when there is none.
    virtual WindowId pingableWindow(WindowId window) = 0;
    /// Windows that answer pings in the other places where `window`'s keys may be looked up: its
    /// process's other connections to the server, and the input methods.
    virtual std::vector<WindowId> pingableCompanions(WindowId window) = 0;
    /// Whether an input method serves this display.
    virtual bool hasInputMethod() = 0;
    /// Asks that window's client to answer as soon as it has handled all events before this one.
    virtual void ping(WindowId window, std::uint32_t number) = 0;
    /// Asks for a Fence event as soon as the server handles our requests again; no other client
    /// holds it then.
    virtual void requestFence() = 0;

    struct KeyPressed {
        std::uint8_t keycode = 0;
        /// Whether it comes from our keyboard.
        bool isOurs = false;
    };
    struct ButtonPressed {
        int button = 0;
    };
    struct FocusLeft {
    };
    struct MapChanged {
    };
    struct Fence {
    };
    struct Pong {
        WindowId window = 0;
        std::uint32_t number = 0;
    };
    using Event = std::variant<KeyPressed, ButtonPressed, FocusLeft, MapChanged, Fence, Pong>;

    /// Has the server tell what happens around `focus`, the window with the keyboard.
    virtual void watch(WindowId focus) = 0;
    virtual void unwatch() = 0;
    /// The next event that has arrived.
    virtual std::optional<Event> nextEvent() = 0;
};

} // namespace platform::linux_
