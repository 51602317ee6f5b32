// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Diagnosis.h"

#include <QHash>

namespace platform::linux_
{

/// Adds what the X server that $DISPLAY names says: window manager, tray, what typing needs.
/// Returns the programs that have windows, process id and window class.
QHash<std::int32_t, QString> addDisplayFacts(SystemFacts &facts);

} // namespace platform::linux_
