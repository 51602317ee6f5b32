// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace platform::linux_
{

/// One key with the modifiers that must be in force while it is pressed (the core protocol's
/// modifier bits: Shift 1, Lock 2, Control 4, Mod1 8 … Mod5 128).
struct Keystroke {
    std::uint8_t keycode = 0;
    std::uint8_t modifiers = 0;
    friend bool operator==(const Keystroke &, const Keystroke &) = default;
};

/// The keysym that types `codePoint`: itself in Latin-1, else the directly encoded one (X11
/// protocol, appendix A, "Unicode KEYSYMs").
std::uint32_t keysymForCodePoint(char32_t codePoint);

/// A copy of the server's keyboard map, and the questions that typing asks of it. A plain value
/// without a connection; any thread, one at a time.
class KeyboardMap
{
public:
    /// A key type: which modifiers choose which level of a key (XKB protocol, "Key Types").
    struct Type {
        struct Entry {
            bool active = true;
            std::uint8_t modifiers = 0;
            std::uint8_t level = 0;
        };
        std::uint8_t modifiers = 0;
        std::uint8_t levels = 1;
        std::vector<Entry> entries;

        std::uint8_t levelFor(std::uint8_t effectiveModifiers) const;
    };

    /// One key: for each group its type and its keysyms, level by level.
    struct Group {
        int type = 0;
        std::vector<std::uint32_t> keysyms;
    };
    struct Key {
        std::vector<Group> groups;
        /// What the server does with a group that the key does not have.
        enum class OutOfRange { Wrap, Clamp, Redirect } outOfRange = OutOfRange::Wrap;
        int redirectGroup = 0;
        bool isModifier = false;
    };

    int minKeycode = 8;
    int maxKeycode = 255;
    std::array<Key, 256> keys;
    std::vector<Type> types;
    /// Modifiers that choose characters and nothing else on this keyboard: always Shift; Mod3 and
    /// Mod5 where they do not stand for Alt, Meta, Super, Hyper or a lock.
    std::uint8_t levelModifiers = 1;

    /// What the layout types by itself while `group` is active and `locked` modifiers are on.
    class Lookup
    {
    public:
        /// The keystroke for a character, if the layout has one: few modifiers, and keys that real
        /// keyboards have, are preferred.
        std::optional<Keystroke> character(char32_t codePoint) const;
        /// The keystroke for a function key such as XK_Return, without modifiers.
        std::optional<std::uint8_t> functionKey(std::uint32_t keysym) const;

    private:
        friend class KeyboardMap;
        std::unordered_map<char32_t, Keystroke> m_characters;
        std::unordered_map<std::uint32_t, std::uint8_t> m_functionKeys;
    };
    Lookup lookup(int group, std::uint8_t locked) const;

    /// Keycodes to which the layout gives nothing at all.
    std::vector<std::uint8_t> spareKeycodes() const;

    /// Keycodes of the letters, digits and signs: keys that type a visible character when pressed
    /// alone, and that a keyboard has in its main part.
    std::vector<std::uint8_t> characterKeycodes() const;

    /// The key type that is best lent to spare keys: one that no key uses, with the most levels, up
    /// to eight. Absent when every such type is in use.
    std::optional<int> spareType() const;
};

} // namespace platform::linux_
