// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <condition_variable>
#include <mutex>

namespace metricpost
{

/// Counts permits. Any thread; it must outlive the calls of release. (std::counting_semaphore may
/// sleep forever in the standard library of GCC before 12.3.)
class Semaphore
{
public:
    void release()
    {
        {
            const std::lock_guard lock(m_mutex);
            ++m_permits;
        }
        // Not under the lock, which the woken thread would only have to wait for.
        m_available.notify_one();
    }

    void acquire()
    {
        std::unique_lock lock(m_mutex);
        m_available.wait(lock, [this] { return m_permits > 0; });
        --m_permits;
    }

    /// False when the time is up before there is a permit.
    template <class Duration> bool acquireWithin(Duration limit)
    {
        std::unique_lock lock(m_mutex);
        if (!m_available.wait_for(lock, limit, [this] { return m_permits > 0; }))
            return false;
        --m_permits;
        return true;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_available;
    int m_permits = 0;
};

} // namespace metricpost
