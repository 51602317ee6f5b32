// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/KeyboardMap.h"

#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <bit>

namespace platform::linux_
{

namespace
{

constexpr std::uint8_t lockModifier = 2;

// The first types are the four that the protocol requires (ONE_LEVEL, TWO_LEVEL, ALPHABETIC,
// KEYPAD); the server falls back on them by itself, so they are never lent.
constexpr int requiredTypes = 4;

// Above come the keys that only some keyboards have, for media and such.
constexpr int lastMainKeycode = 127;

bool isKeypad(std::uint32_t keysym)
{
    return keysym >= XKB_KEY_KP_Space && keysym <= XKB_KEY_KP_Equal;
}

bool isCharacter(char32_t codePoint)
{
    return codePoint >= 0x20 && !(codePoint >= 0x7f && codePoint < 0xa0);
}

// The order in which several keystrokes for one character are preferred.
int rank(Keystroke stroke)
{
    return (stroke.keycode > lastMainKeycode ? 16 : 0) + std::popcount(stroke.modifiers);
}

const KeyboardMap::Group *groupOf(const KeyboardMap::Key &key, int group)
{
    const int count = static_cast<int>(key.groups.size());
    if (count == 0)
        return nullptr;
    if (group >= count) {
        switch (key.outOfRange) {
        case KeyboardMap::Key::OutOfRange::Wrap:
            group %= count;
            break;
        case KeyboardMap::Key::OutOfRange::Clamp:
            group = count - 1;
            break;
        case KeyboardMap::Key::OutOfRange::Redirect:
            group = key.redirectGroup < count ? key.redirectGroup : 0;
            break;
        }
    }
    return &key.groups[static_cast<std::size_t>(group)];
}

} // namespace

std::uint32_t keysymForCodePoint(char32_t codePoint)
{
    const bool latin1 =
        (codePoint >= 0x20 && codePoint < 0x7f) || (codePoint >= 0xa0 && codePoint <= 0xff);
    return latin1 ? codePoint : 0x01000000U + codePoint;
}

std::uint8_t KeyboardMap::Type::levelFor(std::uint8_t effectiveModifiers) const
{
    const std::uint8_t relevant = effectiveModifiers & modifiers;
    for (const Entry &entry : entries) {
        if (entry.active && entry.modifiers == relevant)
            return entry.level;
    }
    return 0;
}

KeyboardMap::Lookup KeyboardMap::lookup(int group, std::uint8_t locked) const
{
    Lookup result;
    for (int keycode = minKeycode; keycode <= maxKeycode; ++keycode) {
        const Key &key = keys[static_cast<std::size_t>(keycode)];
        const Group *active = groupOf(key, group);
        if (!active || key.isModifier || active->type >= static_cast<int>(types.size()))
            continue;
        const Type &type = types[static_cast<std::size_t>(active->type)];
        for (unsigned modifiers = 0; modifiers < 256; ++modifiers) {
            if (modifiers & ~levelModifiers)
                continue;
            const auto effective = static_cast<std::uint8_t>(modifiers | locked);
            const std::uint8_t level = type.levelFor(effective);
            if (level >= active->keysyms.size())
                continue;
            const std::uint32_t keysym = active->keysyms[level];
            if (keysym == XKB_KEY_NoSymbol || isKeypad(keysym))
                continue;
            // Clients turn a letter into its capital when Caps Lock is on and the key's type has
            // no say in it.
            const bool capitalised = (effective & lockModifier) && !(type.modifiers & lockModifier);
            if (capitalised && xkb_keysym_to_upper(keysym) != keysym)
                continue;
            const Keystroke stroke{static_cast<std::uint8_t>(keycode),
                                   static_cast<std::uint8_t>(modifiers)};
            const char32_t codePoint = xkb_keysym_to_utf32(keysym);
            if (isCharacter(codePoint)) {
                const auto [found, inserted] = result.m_characters.try_emplace(codePoint, stroke);
                if (!inserted && rank(stroke) < rank(found->second))
                    found->second = stroke;
            } else if (modifiers == 0) {
                result.m_functionKeys.try_emplace(keysym, stroke.keycode);
            }
        }
    }
    return result;
}

std::optional<Keystroke> KeyboardMap::Lookup::character(char32_t codePoint) const
{
    const auto found = m_characters.find(codePoint);
    return found == m_characters.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::uint8_t> KeyboardMap::Lookup::functionKey(std::uint32_t keysym) const
{
    const auto found = m_functionKeys.find(keysym);
    return found == m_functionKeys.end() ? std::nullopt : std::optional(found->second);
}

std::vector<std::uint8_t> KeyboardMap::spareKeycodes() const
{
    std::vector<std::uint8_t> result;
    for (int keycode = minKeycode; keycode <= maxKeycode; ++keycode) {
        const Key &key = keys[static_cast<std::size_t>(keycode)];
        if (key.groups.empty() && !key.isModifier)
            result.push_back(static_cast<std::uint8_t>(keycode));
    }
    return result;
}

std::vector<std::uint8_t> KeyboardMap::characterKeycodes() const
{
    std::vector<std::uint8_t> result;
    for (int keycode = minKeycode; keycode <= lastMainKeycode; ++keycode) {
        const Key &key = keys[static_cast<std::size_t>(keycode)];
        if (key.groups.empty() || key.groups[0].keysyms.empty() || key.isModifier)
            continue;
        const std::uint32_t keysym = key.groups[0].keysyms[0];
        const char32_t codePoint = xkb_keysym_to_utf32(keysym);
        if (isCharacter(codePoint) && codePoint != U' ' && !isKeypad(keysym))
            result.push_back(static_cast<std::uint8_t>(keycode));
    }
    return result;
}

std::optional<int> KeyboardMap::spareType() const
{
    std::vector<bool> used(types.size());
    for (const Key &key : keys) {
        for (const Group &group : key.groups) {
            if (group.type < static_cast<int>(used.size()))
                used[static_cast<std::size_t>(group.type)] = true;
        }
    }
    std::optional<int> best;
    for (int i = requiredTypes; i < static_cast<int>(types.size()); ++i) {
        const int levels = types[static_cast<std::size_t>(i)].levels;
        if (used[static_cast<std::size_t>(i)] || levels > 8)
            continue;
        if (!best || levels > types[static_cast<std::size_t>(*best)].levels)
            best = i;
    }
    return best;
}

} // namespace platform::linux_
