// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "ApplicationState.h"

namespace metricpost
{

void ApplicationState::applicationDidBecomeActive()
{
    const std::lock_guard lock(m_mutex);
    m_active = true;
    for (const Listener &listener : std::as_const(m_listeners))
        listener.applicationDidBecomeActive();
}

void ApplicationState::applicationWillResignActive()
{
    const std::lock_guard lock(m_mutex);
    m_active = false;
    for (const Listener &listener : std::as_const(m_listeners))
        listener.applicationWillResignActive();
}

int ApplicationState::addListener(const Listener &listener)
{
    const std::lock_guard lock(m_mutex);
    m_listeners.insert(m_nextNumber, listener);
    if (m_active)
        listener.applicationDidBecomeActive();
    return m_nextNumber++;
}

void ApplicationState::removeListener(int number)
{
    const std::lock_guard lock(m_mutex);
    m_listeners.remove(number);
}

} // namespace metricpost
