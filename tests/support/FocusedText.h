// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <optional>

namespace test
{

/// The text of the input that has the keyboard focus, as the accessibility bus shows it; nothing
/// when there is none. It looks in a way of its own, so that the application's is not judged by
/// itself. Main thread only.
std::optional<QString> focusedText();

} // namespace test
