// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/KeyboardMap.h"
#include "platform/linux/keyboard/XConnection.h"

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
/// Only the map of XTEST's own keyboard changes. The user's keyboard keeps its map, and the server
/// shows that one to everybody as soon as the user presses a key.
///
/// The keys form four banks, so that one can be mapped anew while the keys of others are still on
/// their way. Every change of the map is one request, made from a fresh copy while the server is
/// grabbed: another client's change is never undone by ours.
///
/// What was borrowed is written on the root window before it is taken. A process that ended without
/// giving it back no longer owns the selection that goes with it; recover() then does it.
///
/// The thread of the connection only.
class BorrowedKeys
{
public:
    explicit BorrowedKeys(XConnection &connection);
    ~BorrowedKeys();

    /// Gives back what a process that is gone has left borrowed.
    void recover();

    /// Chooses what to borrow from `map`, and stops keys from repeating. False when another process
    /// is typing now.
    bool begin(const KeyboardMap &map);

    /// Adds the keys with which the layout types characters to what begin() has chosen, before
    /// anything is mapped; `map` is the one given there. Whatever the layout has on them then has
    /// to be mapped like any other character. False when they cannot be lent.
    bool takeLayoutKeys(const KeyboardMap &map);
    /// Whether the key is one of those that are borrowed.
    bool lends(std::uint8_t keycode) const;

    static constexpr int bankCount = 4;
    std::size_t bankCapacity() const;
    std::size_t wholeCapacity() const;

    /// Characters, no more than there is room for, and the bank whose keys are to type them, or all
    /// keys without one. The first characters are the quickest to type.
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
    class MapCopy;
    struct Record;
    std::size_t levels() const;
    std::vector<std::uint8_t> bankKeycodes(std::optional<int> bank) const;
    std::uint8_t modifiersFor(std::size_t level) const;
    Record lentType() const;
    void fill(MapCopy &copy, const Load &load);
    void writeRecord();
    std::optional<Record> readRecord() const;
    void restoreMap(const Record &record);

    XConnection &m_connection;
    std::vector<std::uint8_t> m_keycodes;
    std::optional<int> m_type;
    std::vector<std::uint8_t> m_levelModifiers;
    std::unordered_map<char32_t, Keystroke> m_slots[bankCount];
    /// Whether keys repeated before begin().
    bool m_keysRepeat = false;
    bool m_begun = false;
    /// Whether the map has been changed.
    bool m_taken = false;
};

} // namespace platform::linux_
