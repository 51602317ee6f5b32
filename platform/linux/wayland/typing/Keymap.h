// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <vector>

namespace platform::linux_
{

/// Keyboard maps of our own: up to 47 characters, one on each key that prints on a keyboard, beside
/// Return, Tab and BackSpace in their usual places. Other keys are left out, because programs know
/// some by their place and not by what they type: an arrow key would move the caret.
namespace keymap
{

/// evdev's codes (linux/input-event-codes.h), which XKB has 8 higher.
inline constexpr std::uint32_t returnKey = 28;
inline constexpr std::uint32_t tabKey = 15;
inline constexpr std::uint32_t backSpaceKey = 14;
inline constexpr std::size_t capacity = 47;

/// evdev's code of the key that the character at this index is on.
std::uint32_t keyAt(std::size_t index);

/// The map as text, in the format "XKB text v1", with the final NUL that the protocol wants.
QByteArray text(const std::vector<char32_t> &characters);

} // namespace keymap

} // namespace platform::linux_
