// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Installation.h"

/// Sees to it that Quillet runs from where programs belong: hands over to the installed copy, or
/// offers to install this one. Main thread, once, before any window exists.
///
/// Returns true when start-up goes on; false when this process is to end, because the installed
/// copy takes over or the user has chosen to quit.
[[nodiscard]] bool ensureRunningFromApplications(platform::Installation &installation,
                                                 const QStringList &arguments = {});

/// True when this is a developer's run, which is never moved.
bool isRunningFromXcode(platform::Installation &installation);
