// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/WaylandWindowSystem.h"

namespace platform::linux_
{

namespace
{

/// What the compositor says, but for the time while a panel of ours has the keyboard.
class WaylandActiveWindow : public ActiveWindow
{
public:
    WaylandActiveWindow(WindowSource *source, LayerKeyboard &keyboard)
        : m_source(source)
        , m_keyboard(keyboard)
    {
    }

    bool isAvailable() override { return m_source && m_source->isAvailable(); }
    std::optional<Window> activeWindow() override
    {
        if (m_keyboard.isOut())
            return m_keyboard.lender();
        return m_source ? m_source->activeWindow() : std::nullopt;
    }
    std::optional<WindowPlace> geometry(std::uint32_t window) override
    {
        return m_source ? m_source->geometry(window) : std::nullopt;
    }
    bool isPlaceNeeded() override { return true; }
    bool isKeyboardLent() override { return m_keyboard.isOut(); }

private:
    WindowSource *m_source;
    LayerKeyboard &m_keyboard;
};

} // namespace

WaylandWindowSystem::WaylandWindowSystem(std::unique_ptr<WindowSource> source,
                                         QString sessionLimitation)
    : m_source(std::move(source))
    , m_keyboard(m_panels, m_source.get())
    , m_activeWindow(std::make_unique<WaylandActiveWindow>(m_source.get(), m_keyboard))
    , m_workspace(m_source.get(), m_panels, m_keyboard, std::move(sessionLimitation))
{
}

WaylandWindowSystem::~WaylandWindowSystem() = default;

} // namespace platform::linux_
