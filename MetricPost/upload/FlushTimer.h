// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/Seconds.h"

#include <functional>
#include <memory>

namespace metricpost
{

/// A repeating timer on the main thread's event loop. Any thread may start, stop and destroy it.
class FlushTimer
{
public:
    /// The action runs on the main thread, and not after the destructor has returned.
    explicit FlushTimer(std::function<void()> action);
    ~FlushTimer();
    FlushTimer(const FlushTimer &) = delete;
    FlushTimer &operator=(const FlushTimer &) = delete;

    /// Restarts it. The interval is longer than 0.
    void start(Seconds interval);
    void stop();

private:
    struct State;

    std::shared_ptr<State> m_state;
};

} // namespace metricpost
