// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiApplication.h"

#include <QString>

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

/// Reads the text of the tree as Accessibility::copyTreeText() defines it, without waiting, with as
/// few questions as the application allows. `completion` is called once, from the event loop, with
/// what could be read when the application has stopped answering.
///
/// Of the inputs below the element, only the one at the path `focused` is read, if that is one: the
/// others may hold what is none of our business, a card number say.
void readTreeText(AtspiApplication &application, const QByteArray &path, const QByteArray &focused,
                  std::function<void(const QString &)> completion);

} // namespace platform::linux_
