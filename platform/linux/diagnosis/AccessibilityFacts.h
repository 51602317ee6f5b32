// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Diagnosis.h"

namespace platform::linux_
{

/// Adds what the session bus and the accessibility bus say: whether the service is there, a tray of
/// the newer kind, and what the programs on the bus show.
void addAccessibilityFacts(SystemFacts &facts);

} // namespace platform::linux_
