// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiApplication.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace platform::linux_
{

/// Looks for an element that is editable text, in the tree of `path` and including it, without
/// waiting: with one question where the application searches its own tree, else by asking for many
/// elements at a time. `completion` is called once, from within the application's answer; with
/// nothing when the application has stopped answering.
void findEditable(AtspiApplication &application, const QByteArray &path,
                  std::function<void(std::optional<bool>)> completion);

} // namespace platform::linux_
