// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Workspace.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <cstdint>
#include <optional>

namespace platform::linux_
{

/// The names under which the user knows the programs that run: that of the desktop entry which
/// starts the program, else the process's own. Main thread only.
///
/// Cheap to ask again: a process is looked up once, and distinguished from a later one with the
/// same id by its start time.
class ApplicationNames
{
public:
    /// Absent when no such process runs. `windowClass`: what a window of the process names its
    /// program, the class part of WM_CLASS or Wayland's application id; empty where it is not
    /// known.
    std::optional<RunningApplication> application(std::int32_t pid, const QString &windowClass);

private:
    std::optional<QString> nameOf(std::int32_t pid, const QString &windowClass);

    struct Known {
        QByteArray startTime;
        QString windowClass;
        QString name;
    };
    QHash<std::int32_t, Known> m_known;
};

} // namespace platform::linux_
