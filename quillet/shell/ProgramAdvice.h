// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/ProgramAccess.h"
#include "quillet/shell/Notice.h"

#include <QSet>

class QSettings;

/// Helps the user with a program that shows Quillet nothing but its window: says so once for each
/// program, and offers to turn on the switch with which it shows its text. Main thread.
class ProgramAdvice
{
public:
    /// `access` is absent where the system knows no such switches. `store` remembers which programs
    /// have been mentioned. All must outlive this object.
    ProgramAdvice(platform::ProgramAccess *access, Notice &notice, QSettings &store);

    /// The program of `pid` is in front and shows nothing but its window. `advice` is what the
    /// system says of it, for a program that no menu entry starts.
    void mention(std::int32_t pid, const QString &advice);

private:
    bool wasMentioned(const QString &key);
    void turnOn(const platform::ProgramAccess::Program &program, std::int32_t pid);

    platform::ProgramAccess *m_access;
    Notice &m_notice;
    QSettings &m_store;
    /// Programs that were mentioned in this run although their switch is on.
    QSet<QString> m_startedWithout;
};
