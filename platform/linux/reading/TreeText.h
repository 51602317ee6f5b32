// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiApplication.h"

#include <QString>

#include <functional>

namespace platform::linux_
{

/// Reads the text of the tree as Accessibility::copyTreeText() defines it, without waiting, with as
/// few questions as the application allows. `completion` is called once, from the event loop, with
/// what could be read when the application has stopped answering.
///
/// Of the inputs below the element, only the one at the path `focused` is read, if that is one: the
/// others may hold what is none of our business, a card number say.
void readTreeText(AtspiApplication &application, const QByteArray &path, const QByteArray &focused,
                  std::function<void(const QString &)> completion);

} // namespace platform::linux_
