// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "FlushTimer.h"

#include "MainQueue.h"

#include <QTimer>

#include <algorithm>
#include <limits>
#include <mutex>

namespace metricpost
{

struct FlushTimer::State {
    std::mutex mutex;
    std::function<void()> action;
    // Made, used and destroyed on the main thread only.
    std::unique_ptr<QTimer> timer;
};

FlushTimer::FlushTimer(std::function<void()> action)
    : m_state(std::make_shared<State>())
{
    m_state->action = std::move(action);
}

FlushTimer::~FlushTimer()
{
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->action = nullptr;
    }
    // The last holder is the main thread, where the timer belongs.
    runOnMainQueue([state = std::move(m_state)] { state->timer.reset(); });
}

void FlushTimer::start(Seconds interval)
{
    using Milliseconds = std::chrono::duration<double, std::milli>;
    const double milliseconds =
        std::clamp(Milliseconds(interval).count(), 1.0, double(std::numeric_limits<int>::max()));
    runOnMainQueue([state = m_state, milliseconds] {
        state->timer = std::make_unique<QTimer>();
        QObject::connect(state->timer.get(), &QTimer::timeout, [weak = std::weak_ptr(state)] {
            const auto alive = weak.lock();
            const std::lock_guard lock(alive->mutex);
            if (alive->action)
                alive->action();
        });
        state->timer->start(int(milliseconds));
    });
}

void FlushTimer::stop()
{
    runOnMainQueue([state = m_state] { state->timer.reset(); });
}

} // namespace metricpost
