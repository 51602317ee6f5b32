// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "platform/linux/atspi/AtspiApplication.h"
#include "platform/linux/reading/ElementFacts.h"

// One element's attributes, each read in one or two round trips. They wait for the application at
// most AtspiApplication::patience: CannotComplete then. Main thread only.

namespace platform::linux_
{

/// Fetches what decisions need of one element, in one round trip. False when it is gone or did not
/// answer in time.
bool fetchFacts(AtspiApplication &application, const QByteArray &path, ElementFacts &facts,
                QDeadlineTimer deadline = QDeadlineTimer(AtspiApplication::patience));

/// The whole text, embedded elements included.
AXError readText(AtspiApplication &application, const QByteArray &path, AXValue &value);

/// The selected text, or with `range` its range in UTF-16 units; at the caret and empty where
/// nothing is selected.
AXError readSelection(AtspiApplication &application, const QByteArray &path, bool range,
                      AXValue &value);

/// The value of a slider, a progress bar and the like.
AXError readNumber(AtspiApplication &application, const QByteArray &path, AXValue &value);

/// CannotComplete also for more children than a window can show.
AXError readChildren(AtspiApplication &application, const QByteArray &path,
                     QList<ObjectRef> &children);

} // namespace platform::linux_
