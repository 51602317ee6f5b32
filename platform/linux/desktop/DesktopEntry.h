// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

namespace platform::linux_
{

/// The bundle's own desktop entry (freedesktop.org Desktop Entry Specification), changed to start
/// the copy in `bundle` and to show the icon that lies in it.
QByteArray desktopEntryFor(const QByteArray &bundledEntry, const QString &bundle);

/// An entry for the user's autostart folder (freedesktop.org Desktop Application Autostart
/// Specification) that starts `program` without a window.
QByteArray loginEntryFor(const QString &program);

/// Where in a bundle its desktop entry lies.
inline constexpr char16_t bundledEntryPath[] = u"/share/applications/" QUILLET_APP_ID ".desktop";

} // namespace platform::linux_
