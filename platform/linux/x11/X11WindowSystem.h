// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/WindowSystem.h"
#include "platform/linux/x11/FloatingPanels.h"
#include "platform/linux/x11/KeyboardLoan.h"
#include "platform/linux/x11/PointerWatch.h"
#include "platform/linux/x11/X11WindowWatch.h"
#include "platform/linux/x11/X11Workspace.h"
#include "platform/linux/x11/XcbConnection.h"

#include <memory>
#include <optional>

namespace platform::linux_
{

/// X11: one connection to the server beside the toolkit's, and what is built on it. Where the
/// toolkit does not run on X11, no window is known to be active, and the workspace does what needs
/// no server. Main thread only, after the application object is made.
class X11WindowSystem : public WindowSystem
{
public:
    /// `sessionLimitation`: what is missing here, because the X11 server is only a part of the
    /// session.
    explicit X11WindowSystem(QString sessionLimitation = {});
    ~X11WindowSystem() override;

    ActiveWindow &activeWindow() override { return *m_activeWindow; }
    Workspace &workspace() override { return *m_workspace; }
    WindowWatch *windowWatch() override { return m_windowWatch ? &*m_windowWatch : nullptr; }

private:
    std::unique_ptr<XcbConnection> m_connection;
    FloatingPanels m_panels;
    std::optional<KeyboardLoan> m_keyboard;
    std::unique_ptr<ActiveWindow> m_activeWindow;
    std::optional<PointerWatch> m_pointer;
    std::optional<X11WindowWatch> m_windowWatch;
    std::optional<X11Workspace> m_workspace;
};

} // namespace platform::linux_
