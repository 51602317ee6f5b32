// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

namespace platform::linux_
{

/// The option with which Chromium, and what is built on it, exposes its text.
inline constexpr char accessOption[] = "--force-renderer-accessibility";

/// How a program is asked to expose its text.
enum class SwitchKind {
    /// An option on the command line: Chromium and what is built on it.
    Option,
    /// An environment variable: programs that embed Qt's web engine (Qt WebEngine's documentation,
    /// "Debugging and Profiling", QTWEBENGINE_CHROMIUM_FLAGS).
    Variable,
};

/// The desktop entry with the switch in every command (the Exec keys of all its groups), so that
/// it is started by its command and not over D-Bus, and with a key that marks it as ours.
/// `createdByUs`: whether there was no entry of the user's own before. An entry that has the
/// switch already is returned as it is. See the freedesktop.org Desktop Entry Specification, "The
/// Exec key".
QByteArray entryWithSwitch(const QByteArray &entry, SwitchKind kind, bool createdByUs);

/// Takes the switch out of an entry that entryWithSwitch() made.
QByteArray entryWithoutSwitch(const QByteArray &entry);

/// Whether entryWithSwitch() made the entry, and whether from nothing of the user's.
bool hasOurSwitch(const QByteArray &entry);
bool wasCreatedByUs(const QByteArray &entry);

} // namespace platform::linux_
