// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/x11/XcbConnection.h"

namespace platform::linux_
{

/// Tells the desktop that the start with this DESKTOP_STARTUP_ID is over, so that it stops showing
/// that something is starting (freedesktop.org Startup Notification, message "remove"). Main
/// thread only.
void completeStartup(XcbConnection &connection, const QByteArray &startupId);

} // namespace platform::linux_
