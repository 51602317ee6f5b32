// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

namespace platform::linux_
{

/// Copies the folder `from` to `to`, which must not exist: files, folders and symbolic links with
/// their permissions; folders stay writable for the user. `to` appears complete or not at all, also
/// when the machine stops in the middle. Returns the system's description of the error, empty on
/// success. Any thread.
QString copyFolder(const QString &from, const QString &to);

/// Removes the extended attributes in which browsers and mail programs note where a download came
/// from (user.xdg.origin.url, user.xdg.referrer.url and their like; freedesktop.org, Common
/// Extended Attributes) from `path` and everything below it. Any thread.
void removeOriginAttributes(const QString &path);

} // namespace platform::linux_
