// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

/// Runs the event loop until `condition` holds; false when it does not within a time that even a
/// very busy machine keeps.
template <typename Condition> bool waitUntil(Condition &&condition)
{
    QDeadlineTimer deadline(60'000);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(1);
    }
    return true;
}
