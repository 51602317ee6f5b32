#pragma once

#include "platform/linux/keyboard/TypingTarget.h"

#include <memory>

namespace test
{

/// The text input that has the keyboard focus, as the accessibility bus shows it; empty when it
/// shows none. Main thread only.
std::unique_ptr<platform::linux_::TypingTarget> focusedInput();

} // namespace test
