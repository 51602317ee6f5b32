// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "platform/linux/atspi/AtspiApplication.h"
#include "platform/linux/ports/ActiveWindow.h"
#include "platform/linux/reading/ElementFacts.h"

#include <optional>

namespace platform::linux_
{

/// Reads where the part of an element lies that can be seen, in accessibility coordinates. `place`:
/// of the window that it is in, where that is known; `isPlaceNeeded`: no program knows that by
/// itself. NoValue for an element that is hidden, outside every screen, or whose place is a lie;
/// CannotComplete when the application does not answer in time. Main thread only.
AXError readFrame(AtspiApplication &application, const ObjectRef &element,
                  const ElementFacts &facts, std::optional<WindowPlace> place, bool isPlaceNeeded,
                  QRectF &frame);

} // namespace platform::linux_
