// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/KeyboardEvents.h"
#include "platform/linux/keyboard/Clock.h"
#include "platform/linux/keyboard/KeyServer.h"
#include "platform/linux/ports/InputMethods.h"
#include "platform/linux/ports/TypingTarget.h"

#include <memory>
#include <optional>

namespace platform::linux_
{

/// Direct input for as long as this exists. Main thread only.
class DirectInput
{
public:
    /// `methods` may be null; there is nothing to switch then.
    explicit DirectInput(InputMethods *methods);
    ~DirectInput();
    DirectInput(const DirectInput &) = delete;
    DirectInput &operator=(const DirectInput &) = delete;

    /// Absent while an input method is being asked; false when one goes on composing. The first
    /// call asks.
    std::optional<bool> isDirect();

private:
    InputMethods *m_methods;
    /// Shared, because the answer may come when this is gone.
    std::shared_ptr<std::optional<bool>> m_answer;
};

/// Decides when the first key of a text may be sent: once the input has the focus, the user's keys
/// are up, no input method composes and the program is ready. Made for each text. Main thread only.
class TypingWait
{
public:
    TypingWait(TypingTarget &target, DirectInput &directInput, const Clock &clock);

    enum class Step {
        Wait,
        Begin,
        /// Nothing is to be typed; result() says why.
        End,
    };
    Step next(const KeyServer::Moment &moment);
    TypingResult result() const { return m_result; }

private:
    Step end(TypingResult result);

    TypingTarget &m_target;
    DirectInput &m_directInput;
    const Clock &m_clock;
    const Milliseconds m_start;
    /// Since when only the program or an input method is waited for.
    std::optional<Milliseconds> m_asking;
    TypingResult m_result = TypingResult::Failed;
};

} // namespace platform::linux_
