// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/TextInput.h"

namespace platform::linux_
{

/// The ways to bring a text into an input, in the order in which they are tried.
enum class WriteRoute {
    /// The program replaces what differs.
    Edits,
    /// The program replaces everything.
    Contents,
    /// What differs is typed over.
    Stretches,
    /// Everything is typed over.
    All,
};

/// The edits that make `goal` of the content by this way, in the order of their positions. Each is
/// a step of the program's undo. Nothing where the input does not offer the way.
QList<TextEdit> editsFor(WriteRoute route, const TextInput::Content &content, const QString &goal,
                         const TextInput &input);

} // namespace platform::linux_
