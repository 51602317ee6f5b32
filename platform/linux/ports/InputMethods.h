// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>

namespace platform::linux_
{

/// The desktop's input methods, as far as they compose a text out of several keys: what is typed
/// while one does so becomes another text. Main thread only.
class InputMethods
{
public:
    virtual ~InputMethods() = default;

    /// Switches to direct input. `done` is called once, with false when an input method goes on
    /// composing; at once where none does.
    virtual void suspend(std::function<void(bool)> done) = 0;
    /// Switches back to what was on before suspend().
    virtual void resume() = 0;
};

} // namespace platform::linux_
