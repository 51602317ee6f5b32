// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/X11WindowSystem.h"

#include "platform/linux/x11/X11ActiveWindow.h"

namespace platform::linux_
{

namespace
{

/// Without an X server.
class UnknownActiveWindow : public ActiveWindow
{
public:
    bool isAvailable() override { return false; }
    std::optional<Window> activeWindow() override { return {}; }
    std::optional<WindowPlace> geometry(std::uint32_t) override { return {}; }
};

} // namespace

X11WindowSystem::X11WindowSystem(QString sessionLimitation)
    : m_connection(XcbConnection::open())
    , m_panels(m_connection.get())
{
    if (m_connection) {
        m_keyboard.emplace(*m_connection, m_panels);
        m_activeWindow = std::make_unique<X11ActiveWindow>(*m_connection, m_panels, *m_keyboard);
        m_pointer.emplace(*m_connection);
        m_windowWatch.emplace(*m_connection, m_panels, &*m_pointer);
    } else {
        m_activeWindow = std::make_unique<UnknownActiveWindow>();
    }
    m_workspace.emplace(m_connection.get(), m_panels, m_keyboard ? &*m_keyboard : nullptr,
                        m_pointer ? &*m_pointer : nullptr, *m_activeWindow,
                        std::move(sessionLimitation));
}

X11WindowSystem::~X11WindowSystem() = default;

} // namespace platform::linux_
