// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/KeyboardEvents.h"
#include "platform/linux/ports/TypingTarget.h"

#include <functional>
#include <memory>

namespace platform::linux_
{

/// Types text as a keyboard would, by whatever way the window system offers. Main thread only.
class Typist
{
public:
    virtual ~Typist() = default;

    /// Types `events` into `target`, for as long as that has the focus; without a target nothing is
    /// typed. Returns at once; `completion` is called exactly once from the event loop. A second
    /// call waits for the first.
    virtual void type(std::unique_ptr<TypingTarget> target, const QList<KeyboardEvent> &events,
                      std::function<void(TypingResult)> completion) = 0;
};

} // namespace platform::linux_
