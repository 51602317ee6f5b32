// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/Clock.h"
#include "platform/linux/ports/TypingTarget.h"

#include <cstddef>
#include <optional>

namespace platform::linux_
{

/// Editors that start a new line with the last one's indentation would indent a text twice. After a
/// line break this looks for what they have added, which BackSpace then deletes key by key, before
/// the line goes on. One object for each text. Times are of any steady clock. Main
/// thread only; a look at the input waits for its answer.
class IndentRemoval
{
public:
    /// `target` is an input that tells how long its text is.
    explicit IndentRemoval(TypingTarget &target);

    enum class Step {
        /// There is nothing left to delete.
        Done,
        /// What is there cannot be deleted and belongs there. Once a line; Done from then on.
        Keep,
        /// The line break, or the last BackSpace, does not show yet.
        Wait,
        /// Send BackSpace.
        Delete,
    };
    /// What to do after the line break that is the text's `line`-th key, and the last one sent.
    Step next(std::size_t line, Milliseconds now);

private:
    TypingTarget &m_target;
    /// The line break of the last call, and whether its indent is gone.
    std::size_t m_line = 0;
    bool m_done = false;
    /// How much there was to delete before the last BackSpace.
    std::optional<qsizetype> m_left;
    /// Since when something is waited for.
    Milliseconds m_since{0};
    Milliseconds m_nextLook{0};
    /// Whether an indentation of this text could not be deleted.
    bool m_inVain = false;
};

} // namespace platform::linux_
