// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/ActiveWindow.h"

#include <QByteArray>

#include <memory>
#include <xcb/xcb.h>

namespace platform::linux_
{

/// The active window of an X11 desktop, by the EWMH property _NET_ACTIVE_WINDOW. Watches the
/// property, so that asking costs nothing while it stays the same. The process comes from the X
/// server (the X-Resource extension, version 1.2) and from _NET_WM_PID. Main thread only.
class X11ActiveWindow : public ActiveWindow
{
public:
    /// `display`: as in DISPLAY; empty for that one.
    explicit X11ActiveWindow(const QByteArray &display = {});
    ~X11ActiveWindow() override;

    bool isAvailable() override;
    std::optional<Window> activeWindow() override;
    std::optional<WindowPlace> geometry(std::uint32_t window) override;

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };

    xcb_atom_t atom(const char *name);
    std::optional<std::uint32_t> property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type);
    void refresh();
    QList<std::int32_t> processes(xcb_window_t window);

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    xcb_window_t m_root = XCB_NONE;
    xcb_atom_t m_netActiveWindow = XCB_NONE;
    xcb_atom_t m_netWmPid = XCB_NONE;
    xcb_atom_t m_gtkFrameExtents = XCB_NONE;
    bool m_hasResources = false;
    bool m_stale = true;
    bool m_told = false;
    std::optional<Window> m_window;
};

} // namespace platform::linux_
