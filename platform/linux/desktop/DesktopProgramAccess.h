// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/ProgramAccess.h"

#include <QObject>

namespace platform::linux_
{

/// The switches of programs, by copies of their desktop entries in the user's own data folder,
/// which come before the system's (XDG Base Directory Specification, $XDG_DATA_HOME). Main thread
/// only.
class DesktopProgramAccess : public QObject, public ProgramAccess
{
    Q_OBJECT
public:
    /// `userEntries`: the folder of the user's own desktop entries; made when it is needed.
    explicit DesktopProgramAccess(QString userEntries = defaultUserEntries());

    static QString defaultUserEntries();

    std::optional<Program> programOf(std::int32_t pid) override;
    bool embedsWebEngine(std::int32_t pid) override;
    QList<Program> turnedOn() override;
    QString turnOn(const QString &entry, std::int32_t pid) override;
    QString turnOff(const QString &entry) override;
    void startAfterQuit(const QString &entry, std::int32_t pid,
                        std::function<void(bool)> completion) override;

private:
    QString fileOf(const QString &entry) const;

    QString m_userEntries;
};

} // namespace platform::linux_
