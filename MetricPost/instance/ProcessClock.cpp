// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "ProcessClock.h"

#include <algorithm>
#include <utility>

namespace metricpost
{

ProcessClock::ProcessClock(std::function<double()> wall, std::function<double()> steady)
    : m_wall(std::move(wall))
    , m_steady(std::move(steady))
    , m_lastNow(m_wall())
    , m_lastSteady(m_steady())
{
}

double ProcessClock::now()
{
    const std::lock_guard lock(m_mutex);
    const double steady = m_steady();
    // The steady clock stops while the computer sleeps; the wall clock is then ahead and holds.
    m_lastNow = std::max(m_wall(), m_lastNow + (steady - m_lastSteady));
    m_lastSteady = steady;
    return m_lastNow;
}

} // namespace metricpost
