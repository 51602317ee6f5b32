// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace platform
{

/// Programs that expose only their window frames to the accessibility service until they are
/// started with a switch of their own, and the way to turn that switch on for good. Main thread
/// only.
class ProgramAccess
{
public:
    struct Program {
        /// Identifies the program on this system: the file name of its desktop entry.
        QString entry;
        /// What the user knows it as.
        QString name;
        /// Whether turnOn() is in force for it.
        bool isOn = false;
    };

    virtual ~ProgramAccess() = default;

    /// The program that the process runs. Absent when no desktop entry starts it.
    virtual std::optional<Program> programOf(std::int32_t pid) = 0;

    /// Whether the process embeds a web engine that takes the switch, although its toolkit does not
    /// say so.
    virtual bool embedsWebEngine(std::int32_t pid) = 0;

    /// Every program for which the switch is on.
    virtual QList<Program> turnedOn() = 0;

    /// From its next start on, the program exposes its text. Changes only the user's own files;
    /// an entry that the user has made is kept and amended. `pid`: a process of the program, which
    /// tells what kind of switch it takes. The result is empty, or the reason of the failure as a
    /// sentence for the user.
    virtual QString turnOn(const QString &entry, std::int32_t pid) = 0;
    /// Takes back what turnOn() changed, and nothing else.
    virtual QString turnOff(const QString &entry) = 0;

    /// Starts the program again as soon as the user has quit it: never ends it. `completion`: true
    /// once it is started; false when it cannot be, or still runs after ten minutes.
    virtual void startAfterQuit(const QString &entry, std::int32_t pid,
                                std::function<void(bool)> completion) = 0;
};

} // namespace platform
