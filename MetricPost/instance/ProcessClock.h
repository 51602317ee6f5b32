// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <mutex>

namespace metricpost
{

/// The wall clock, except that it never runs backwards: when the system's clock is set back, it
/// goes on from where it was, at the pace of the steady clock. Any thread.
class ProcessClock
{
public:
    /// Both give seconds: `wall` since 1970, `steady` since any moment.
    ProcessClock(std::function<double()> wall, std::function<double()> steady);

    /// Seconds since 1970.
    double now();

private:
    const std::function<double()> m_wall;
    const std::function<double()> m_steady;
    std::mutex m_mutex;
    double m_lastNow;
    double m_lastSteady;
};

} // namespace metricpost
