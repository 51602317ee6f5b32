// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/ActiveWindow.h"
#include "platform/linux/x11/WindowServer.h"

#include <QObject>

namespace platform::linux_
{

class FloatingPanels;
class KeyboardLoan;

/// The active window of an X11 desktop, by the EWMH property _NET_ACTIVE_WINDOW: the one answer to
/// "whose window is in front". Watches the property, the window manager and the window, so that
/// asking costs nothing while they stay the same. Main thread only.
class X11ActiveWindow : public QObject, public ActiveWindow
{
    Q_OBJECT
public:
    /// All three must outlive this object.
    X11ActiveWindow(WindowServer &server, FloatingPanels &panels, KeyboardLoan &keyboard);
    ~X11ActiveWindow() override;

    bool isAvailable() override;
    /// A window that is gone or not viewable is not active, whatever the property says, and neither
    /// is a panel of ours: some window managers name it while it has the keyboard.
    std::optional<Window> activeWindow() override;
    std::optional<WindowPlace> geometry(std::uint32_t window) override;
    bool isKeyboardLent() override;

private:
    void note(const xcb_generic_event_t *event);
    void refresh();
    void refreshManager();
    void watch(xcb_window_t *watched, xcb_window_t window);

    WindowServer &m_server;
    FloatingPanels &m_panels;
    KeyboardLoan &m_keyboard;
    /// The window that the property names, and the window manager's own.
    xcb_window_t m_watched = XCB_NONE;
    xcb_window_t m_managerWindow = XCB_NONE;
    bool m_isStale = true;
    bool m_isManagerStale = true;
    bool m_hasManager = false;
    bool m_hasProperty = false;
    std::optional<Window> m_window;
};

} // namespace platform::linux_
