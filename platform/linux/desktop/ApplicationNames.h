// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

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
/// Cheap to ask again: a process is looked up once, and told from a later one with the same id by
/// its start time.
class ApplicationNames
{
public:
    /// Absent when no such process runs. `windowClass` is the class part of WM_CLASS of a window
    /// of the process, where one is known.
    std::optional<QString> nameOf(std::int32_t pid, const QString &windowClass = {});

private:
    struct Known {
        QByteArray startTime;
        QString windowClass;
        QString name;
    };
    QHash<std::int32_t, Known> m_known;
};

} // namespace platform::linux_
