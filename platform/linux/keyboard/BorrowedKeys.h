// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/BorrowedNote.h"
#include "platform/linux/keyboard/KeyServer.h"
#include "platform/linux/keyboard/KeyboardMap.h"

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

namespace platform::linux_
{

/// The keycodes that the layout leaves empty, lent to characters that it does not have; where they
/// are too few, the layout's letters, digits and signs are lent too. Each key takes one character a
/// level, in one group, so that the active group does not matter; its key type is one that no other
/// key uses, redefined so that Shift, Mod5 and Mod3 choose among eight levels and Caps Lock and Num
/// Lock change nothing.
///
/// While keys are borrowed none repeats: between the press and the release of a typed key a machine
/// that stands still would have the server type it again.
///
/// Only the map of XTEST's own keyboard changes. The user's keyboard keeps its map, and the
/// server shows that map to all clients as soon as the user presses a key.
///
/// The keys form four banks, so that one can be mapped again while the keys of others are still on
/// their way. Every change of the map is one request, made from a fresh copy while the server is
/// grabbed: another client's change is never undone by ours.
///
/// What is borrowed is noted at the server before it is taken. A process that ended without giving
/// it back no longer has the typist's mark; recover() then does it.
///
/// The thread of the connection only.
class BorrowedKeys
{
public:
    explicit BorrowedKeys(KeyServer &server);
    ~BorrowedKeys();

    /// Gives back what a process that is gone has left borrowed.
    void recover();

    /// Chooses what to borrow from `map`, stops keys from repeating and switches off `locks` of the
    /// ones that are on (`locked`). False when another process is typing now.
    bool begin(const KeyboardMap &map, std::uint8_t locked = 0, std::uint8_t locks = 0);

    /// Adds the keys with which the layout types characters to what begin() has chosen, before
    /// anything is mapped; `map` is the one given there. Whatever the layout has on them then has
    /// to be mapped like any other character. False when they cannot be lent.
    bool takeLayoutKeys(const KeyboardMap &map);
    /// Whether the key is one of those that are borrowed.
    bool lends(std::uint8_t keycode) const;

    static constexpr int bankCount = 4;
    std::size_t bankCapacity() const;
    std::size_t wholeCapacity() const;

    /// Characters, at most as many as there is room for, and the bank whose keys type them; without
    /// a bank, all keys do. The first characters are the quickest to type.
    struct Load {
        std::optional<int> bank;
        const std::vector<char32_t> &characters;
    };
    /// Maps each load, in place of what its keys held, in one change of the map.
    void map(const std::vector<Load> &loads);
    std::optional<Keystroke> keyFor(std::optional<int> bank, char32_t codePoint) const;

    /// Leaves the keyboard as it was before begin().
    void giveBack();

private:
    std::size_t levels() const;
    std::vector<std::uint8_t> bankKeycodes(std::optional<int> bank) const;
    std::uint8_t modifiersFor(std::size_t level) const;
    KeyServer::RawType lentType() const;
    std::vector<KeyServer::RawKey> keysFor(const Load &load);
    void writeNote();
    void restoreMap(const BorrowedNote &note);
    void restoreLocks(std::uint8_t released);

    KeyServer &m_server;
    std::vector<std::uint8_t> m_keycodes;
    std::optional<int> m_type;
    std::vector<std::uint8_t> m_levelModifiers;
    std::unordered_map<char32_t, Keystroke> m_slots[bankCount];
    /// Whether keys repeated before begin(), and the locks that it has switched off.
    bool m_keysRepeat = false;
    std::uint8_t m_releasedLocks = 0;
    bool m_begun = false;
    /// Whether the map has been changed.
    bool m_taken = false;
};

} // namespace platform::linux_
