// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <functional>

class QObject;

/// Examines the system, asks the writing backend what it works with, and prints the findings, as
/// text or as JSON. Needs an application object, and no display. Returns the exit status: 0 when
/// Quillet can do its job. Takes some seconds at most where parts of the desktop do not answer.
int runDoctor(bool json);

/// Runs the doctor as a process of its own, so that the windows stay alive meanwhile. `told` hears
/// its report, with the version, unless `context` has gone. Main thread.
void examineInOwnProcess(QObject *context, std::function<void(const QString &report)> told);
