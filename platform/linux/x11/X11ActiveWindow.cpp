// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/X11ActiveWindow.h"

#include "platform/linux/x11/FloatingPanels.h"
#include "platform/linux/x11/KeyboardLoan.h"
#include "platform/linux/x11/WindowProperties.h"

#include <utility>

namespace platform::linux_
{

namespace
{

const QByteArray activeWindowProperty = QByteArrayLiteral("_NET_ACTIVE_WINDOW");
const QByteArray managerProperty = QByteArrayLiteral("_NET_SUPPORTING_WM_CHECK");
const QByteArray supportedProperty = QByteArrayLiteral("_NET_SUPPORTED");

} // namespace

X11ActiveWindow::X11ActiveWindow(WindowServer &server, FloatingPanels &panels,
                                 KeyboardLoan &keyboard)
    : m_server(server)
    , m_panels(panels)
    , m_keyboard(keyboard)
{
    connect(&m_server, &WindowServer::eventNoticed, this, &X11ActiveWindow::note);
    m_server.select(m_server.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
}

X11ActiveWindow::~X11ActiveWindow() = default;

void X11ActiveWindow::note(const xcb_generic_event_t *event)
{
    xcb_window_t window = XCB_NONE;
    switch (event->response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
        const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
        if (change->window != m_server.root())
            return;
        m_isStale = m_isStale || change->atom == m_server.atom(activeWindowProperty);
        m_isManagerStale = m_isManagerStale || change->atom == m_server.atom(managerProperty) ||
                           change->atom == m_server.atom(supportedProperty);
        return;
    }
    case XCB_MAP_NOTIFY:
        window = reinterpret_cast<const xcb_map_notify_event_t *>(event)->window;
        break;
    case XCB_UNMAP_NOTIFY:
        window = reinterpret_cast<const xcb_unmap_notify_event_t *>(event)->window;
        break;
    case XCB_DESTROY_NOTIFY:
        window = reinterpret_cast<const xcb_destroy_notify_event_t *>(event)->window;
        // Its id may be given to another window.
        for (auto [watched, isStale] :
             {std::pair(&m_watched, &m_isStale), std::pair(&m_managerWindow, &m_isManagerStale)}) {
            if (*watched == window) {
                watch(watched, XCB_NONE);
                *isStale = true;
            }
        }
        return;
    case XCB_REPARENT_NOTIFY:
        window = reinterpret_cast<const xcb_reparent_notify_event_t *>(event)->window;
        break;
    default:
        return;
    }
    m_isStale = m_isStale || window == m_watched;
    m_isManagerStale = m_isManagerStale || window == m_managerWindow;
}

void X11ActiveWindow::watch(xcb_window_t *watched, xcb_window_t window)
{
    if (*watched == window)
        return;
    if (*watched != XCB_NONE)
        m_server.deselect(*watched, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    *watched = XCB_NONE;
    if (window != XCB_NONE && m_server.select(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY))
        *watched = window;
}

// A window manager that has died leaves its properties behind.
void X11ActiveWindow::refreshManager()
{
    if (!std::exchange(m_isManagerStale, false))
        return;
    // Selected before it is asked for, so that no change is missed.
    watch(&m_managerWindow, m_server.item(m_server.root(), managerProperty).value_or(XCB_NONE));
    m_hasManager = m_server.windowManagerSupports(activeWindowProperty);
    m_isStale = true;
}

void X11ActiveWindow::refresh()
{
    m_server.catchUp();
    refreshManager();
    // The X server may not know a window's process yet.
    if (!m_isStale && !(m_window && m_window->pids.isEmpty()))
        return;
    m_isStale = false;
    const auto active = m_server.item(m_server.root(), activeWindowProperty);
    m_hasProperty = active.has_value();
    xcb_window_t window = active.value_or(XCB_NONE);
    if (m_panels.panelWith(window))
        window = m_watched;
    watch(&m_watched, window);
    m_window.reset();
    if (m_watched == XCB_NONE || !m_server.isViewable(window))
        return;
    m_window = Window{window, {}};
    if (const auto pid = m_server.processOf(window))
        m_window->pids.append(*pid);
}

bool X11ActiveWindow::isAvailable()
{
    refresh();
    return m_hasManager && m_hasProperty;
}

std::optional<ActiveWindow::Window> X11ActiveWindow::activeWindow()
{
    return isAvailable() ? m_window : std::nullopt;
}

std::optional<WindowPlace> X11ActiveWindow::geometry(std::uint32_t window)
{
    const auto surface = m_server.placeOf(window);
    if (!surface)
        return std::nullopt;
    return WindowPlace{withoutShadow(*surface, m_server.items(window, "_GTK_FRAME_EXTENTS")),
                       *surface};
}

bool X11ActiveWindow::isKeyboardLent()
{
    return m_keyboard.isOut();
}

} // namespace platform::linux_
