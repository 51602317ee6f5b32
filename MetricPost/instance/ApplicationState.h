// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QMap>

#include <functional>
#include <mutex>

namespace metricpost
{

/// Notifies the instances when the application becomes active and when it stops being so. The
/// application reports; the instances listen. Any thread; listeners run on the reporting one and
/// must not add or remove listeners.
class ApplicationState
{
public:
    struct Listener {
        std::function<void()> applicationDidBecomeActive;
        std::function<void()> applicationWillResignActive;
    };

    void applicationDidBecomeActive();
    void applicationWillResignActive();

    /// Returns the number to remove it by. A listener that comes while the application is
    /// already active is notified at once.
    int addListener(const Listener &listener);

    /// When it returns the listener is not running and will not run again.
    void removeListener(int number);

private:
    std::mutex m_mutex;
    bool m_active = false;
    int m_nextNumber = 0;
    QMap<int, Listener> m_listeners;
};

} // namespace metricpost
