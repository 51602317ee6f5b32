// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/KeyboardMap.h"

#include <gtest/gtest.h>

#include <xkbcommon/xkbcommon-keysyms.h>

using platform::linux_::KeyboardMap;
using platform::linux_::Keystroke;

namespace
{

constexpr std::uint8_t shift = 1;
constexpr std::uint8_t lock = 2;
constexpr std::uint8_t mod3 = 32;
constexpr std::uint8_t mod5 = 128;

// The protocol's four required types, then FOUR_LEVEL and one that nothing uses.
KeyboardMap makeMap()
{
    KeyboardMap map;
    map.levelModifiers = shift | mod3 | mod5;
    map.types = {
        {0, 1, {}},
        {shift, 2, {{true, shift, 1}}},
        {shift | lock, 2, {{true, shift, 1}, {true, lock, 1}}},
        {shift | 16, 2, {{true, shift, 1}, {true, 16, 1}}},
        {shift | mod5, 4, {{true, shift, 1}, {true, mod5, 2}, {true, shift | mod5, 3}}},
        {shift, 8, {}},
        {shift, 12, {}},
    };
    map.keys[24].groups = {{2, {XKB_KEY_q, XKB_KEY_Q}},
                           {2, {XKB_KEY_Cyrillic_shorti, XKB_KEY_Cyrillic_SHORTI}}};
    map.keys[26].groups = {{4, {XKB_KEY_e, XKB_KEY_E, XKB_KEY_EuroSign, XKB_KEY_dead_acute}}};
    map.keys[36].groups = {{0, {XKB_KEY_Return}}};
    map.keys[50].groups = {{0, {XKB_KEY_Shift_L}}};
    map.keys[50].isModifier = true;
    map.keys[87].groups = {{3, {XKB_KEY_KP_End, XKB_KEY_KP_1}}};
    map.keys[187].groups = {{0, {XKB_KEY_parenleft}}};
    map.keys[19].groups = {{1, {XKB_KEY_0, XKB_KEY_parenleft}}};
    return map;
}

TEST(KeyboardMap, FindsCharactersOnEveryLevelOfTheActiveGroup)
{
    const KeyboardMap map = makeMap();
    const auto first = map.lookup(0, 0);
    EXPECT_EQ(first.character(U'q'), (Keystroke{24, 0}));
    EXPECT_EQ(first.character(U'Q'), (Keystroke{24, shift}));
    EXPECT_EQ(first.character(U'€'), (Keystroke{26, mod5}));
    EXPECT_EQ(first.character(U'й'), std::nullopt);
    // Real keyboards have the key with Shift and lack the other one.
    EXPECT_EQ(first.character(U'('), (Keystroke{19, shift}));
    // Dead keys and the keypad type something else than their character.
    EXPECT_EQ(first.character(U'´'), std::nullopt);
    EXPECT_EQ(first.character(U'1'), std::nullopt);
    EXPECT_EQ(first.functionKey(XKB_KEY_Return), 36);

    const auto second = map.lookup(1, 0);
    EXPECT_EQ(second.character(U'й'), (Keystroke{24, 0}));
    EXPECT_EQ(second.character(U'q'), std::nullopt);
    EXPECT_EQ(second.character(U'e'), (Keystroke{26, 0})) << "a key with one group wraps";
}

TEST(KeyboardMap, CapsLockIsAnsweredByTheOtherLevel)
{
    KeyboardMap map = makeMap();
    map.types[2].entries = {{true, shift, 1}, {true, lock, 1}};
    const auto locked = map.lookup(0, lock);
    EXPECT_EQ(locked.character(U'Q'), (Keystroke{24, 0}));
    EXPECT_EQ(locked.character(U'q'), (Keystroke{24, shift}));
    // This key's type ignores Caps Lock, so clients turn its small letter into the capital.
    EXPECT_EQ(locked.character(U'e'), std::nullopt);
    EXPECT_EQ(locked.character(U'€'), (Keystroke{26, mod5}));
}

TEST(KeyboardMap, LendsOnlyWhatNobodyUses)
{
    KeyboardMap map = makeMap();
    const auto spare = map.spareKeycodes();
    EXPECT_EQ(spare.size(), 248U - 7U);
    EXPECT_EQ(map.spareType(), 5) << "twelve levels are more than the modifiers choose";
    map.keys[200].groups = {{5, {XKB_KEY_x}}};
    EXPECT_EQ(map.spareType(), std::nullopt);
}

TEST(KeyboardMap, KnowsTheLettersDigitsAndSigns)
{
    KeyboardMap map = makeMap();
    map.keys[65].groups = {{0, {XKB_KEY_space}}};
    map.keys[34].groups = {{1, {XKB_KEY_dead_circumflex, XKB_KEY_dead_diaeresis}}};
    const std::vector<std::uint8_t> expected{19, 24, 26};
    EXPECT_EQ(map.characterKeycodes(), expected) << "not Return, the keypad, media or dead keys";
}

} // namespace
