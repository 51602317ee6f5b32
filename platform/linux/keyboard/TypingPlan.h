// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/KeyboardEvents.h"
#include "platform/linux/keyboard/KeyboardMap.h"

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

namespace platform::linux_
{

/// One press and release to come, and what it adds to the input: one code point each.
struct PlannedKey {
    enum class Kind {
        Character,
        LineBreak,
        Tab,
        /// Deletes what is selected.
        BackSpace,
    };
    Kind kind = Kind::Character;
    char32_t codePoint = 0;
    /// A line break after which editors may indent the new line by themselves.
    bool mayIndent = false;
    /// Where the layout types the character by itself.
    std::optional<Keystroke> onLayout;
};

/// How an input wants the keys that have more than one meaning.
struct TypingHabits {
    bool softLineBreaks = false;
    bool takesTabs = false;
};

/// The code points that the events' key-downs type, in order: lone surrogates, control characters
/// and noncharacters are left out, CR LF and CR become one line break, a tab becomes four spaces
/// where the Tab key would leave the input. A backspace that is all there is to type is the
/// BackSpace key, which empties an input that is wholly selected.
std::vector<PlannedKey> planKeys(const QList<KeyboardEvent> &events,
                                 const KeyboardMap::Lookup &layout, const TypingHabits &habits);

/// A stretch of the plan whose borrowed characters fit into one bank of spare keys.
struct Segment {
    std::size_t begin = 0;
    std::size_t end = 0;
    /// The characters to be mapped, each once, the frequent ones first, equally frequent ones in
    /// the order of their first use.
    std::vector<char32_t> characters;
};

/// Cuts the plan into segments. One when everything fits into `wholeCapacity` slots; otherwise each
/// segment needs at most `bankCapacity`, so that one bank is mapped again while others are typed.
/// Empty when characters have to be mapped and there is no slot.
std::optional<std::vector<Segment>> cutIntoSegments(const std::vector<PlannedKey> &keys,
                                                    std::size_t wholeCapacity,
                                                    std::size_t bankCapacity);

} // namespace platform::linux_
