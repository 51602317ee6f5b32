// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/WindowWatch.h"
#include "platform/linux/x11/WindowServer.h"

#include <QObject>
#include <QSize>

namespace platform::linux_
{

class FloatingPanels;
class PointerWatch;

/// Watches a window by the X server's own events: its structure, that of the window manager's frame
/// around it, and that of the windows beside it. Main thread only.
class X11WindowWatch : public QObject, public WindowWatch
{
    Q_OBJECT
public:
    /// All must outlive this object; `pointer` may be null.
    X11WindowWatch(WindowServer &server, FloatingPanels &panels, PointerWatch *pointer);

    void watch(std::uint32_t window, std::function<void(Change)> changed) override;
    bool isViewable() override;
    bool isCovered(const QRect &place) override;

private:
    void handle(const xcb_generic_event_t *event);
    void handleConfigure(const xcb_configure_notify_event_t &event);
    void findFrame();
    QRect solidPart(xcb_window_t topLevel);
    void tell(Change change);

    WindowServer &m_server;
    FloatingPanels &m_panels;
    PointerWatch *const m_pointer;
    std::function<void(Change)> m_changed;
    xcb_window_t m_window = XCB_NONE;
    QSize m_size;
    /// The child of the root window that the window is in, or is.
    xcb_window_t m_frame = XCB_NONE;
    QRect m_framePlace;
    bool m_isViewable = false;
};

} // namespace platform::linux_
