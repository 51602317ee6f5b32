// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace platform::linux_
{

/// A desktop entry that starts a program (freedesktop.org Desktop Entry Specification).
struct ProgramEntry {
    /// Its file's name, with the suffix ".desktop".
    QString id;
    /// Its Name in the user's language.
    QString name;
    QString file;
};

/// The entry that starts the program of a process: by the window's class, else by the entry's name,
/// else by its executable. `windowClass`: the class part of WM_CLASS, or empty. Main thread only;
/// reads all entries on its first call.
std::optional<ProgramEntry> entryOfProcess(std::int32_t pid, const QString &windowClass = {});

} // namespace platform::linux_
