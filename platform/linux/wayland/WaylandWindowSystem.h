// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/WindowSystem.h"
#include "platform/linux/wayland/WaylandWorkspace.h"
#include "platform/linux/wayland/WindowSource.h"
#include "platform/linux/wayland/layers/LayerKeyboard.h"
#include "platform/linux/wayland/layers/LayerPanels.h"

#include <memory>

namespace platform::linux_
{

/// Wayland: what the compositor reports of windows, and what is built on it.
class WaylandWindowSystem : public WindowSystem
{
public:
    /// `source` may be null: then no window is known to be active, and panels have no place.
    WaylandWindowSystem(std::unique_ptr<WindowSource> source, QString sessionLimitation);
    ~WaylandWindowSystem() override;

    Workspace &workspace() override { return m_workspace; }
    ActiveWindow &activeWindow() override { return *m_activeWindow; }

private:
    std::unique_ptr<WindowSource> m_source;
    LayerPanels m_panels;
    LayerKeyboard m_keyboard;
    std::unique_ptr<ActiveWindow> m_activeWindow;
    WaylandWorkspace m_workspace;
};

} // namespace platform::linux_
