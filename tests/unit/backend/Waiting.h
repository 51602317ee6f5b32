#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

/// Runs the event loop until `condition` holds. False after a minute, which
/// only a broken program takes.
template <class Condition> bool waitUntil(Condition condition)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.elapsed() > 60'000)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(1);
    }
    return true;
}
