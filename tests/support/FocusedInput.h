#pragma once

#include "platform/linux/keyboard/TypingTarget.h"

#include <memory>

namespace test
{

/// A text input as the accessibility bus shows it. Main thread only.
class ReadableInput : public platform::linux_::TypingTarget
{
public:
    virtual QString text() = 0;
};

/// The text input that has the keyboard focus; empty when there is none.
std::unique_ptr<ReadableInput> focusedInput();

} // namespace test
