// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

class QUrl;

namespace platform::linux_
{

/// Opens `url` with the user's program for it. False when nothing does.
bool openUrl(const QUrl &url);

} // namespace platform::linux_
