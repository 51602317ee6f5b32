// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/X11WindowWatch.h"

#include "platform/linux/x11/FloatingPanels.h"
#include "platform/linux/x11/PointerWatch.h"

#include <QMargins>

namespace platform::linux_
{

X11WindowWatch::X11WindowWatch(WindowServer &server, FloatingPanels &panels, PointerWatch *pointer)
    : m_server(server)
    , m_panels(panels)
    , m_pointer(pointer)
{
    connect(&m_server, &WindowServer::eventReceived, this, &X11WindowWatch::handle);
    if (m_pointer)
        connect(m_pointer, &PointerWatch::pressed, this, [this] { tell(Change::Perhaps); });
}

void X11WindowWatch::watch(std::uint32_t window, std::function<void(Change)> changed)
{
    if (m_window != XCB_NONE) {
        m_server.deselect(m_window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        m_server.deselect(m_server.root(),
                          XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
    }
    m_window = XCB_NONE;
    m_changed = {};
    if (window != XCB_NONE && m_server.select(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY)) {
        m_server.select(m_server.root(),
                        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
        m_window = window;
        m_changed = std::move(changed);
        m_isViewable = m_server.isViewable(m_window);
        m_size = m_server.placeOf(m_window).value_or(QRect()).size();
        findFrame();
    }
    if (m_pointer)
        m_pointer->setPressesWanted(this, m_window != XCB_NONE);
}

void X11WindowWatch::findFrame()
{
    m_frame = m_window;
    for (xcb_window_t parent = m_server.parentOf(m_frame);
         parent != XCB_NONE && parent != m_server.root(); parent = m_server.parentOf(m_frame))
        m_frame = parent;
    m_framePlace = m_server.placeOf(m_frame).value_or(QRect());
}

void X11WindowWatch::tell(Change change)
{
    if (m_changed)
        m_changed(change);
}

void X11WindowWatch::handle(const xcb_generic_event_t *event)
{
    if (m_window == XCB_NONE)
        return;
    xcb_window_t window = XCB_NONE;
    switch (event->response_type & 0x7f) {
    case XCB_CONFIGURE_NOTIFY:
        handleConfigure(*reinterpret_cast<const xcb_configure_notify_event_t *>(event));
        return;
    case XCB_PROPERTY_NOTIFY: {
        const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
        if (change->window == m_server.root() &&
            change->atom == m_server.atom("_NET_ACTIVE_WINDOW"))
            tell(Change::Perhaps);
        return;
    }
    case XCB_UNMAP_NOTIFY:
        window = reinterpret_cast<const xcb_unmap_notify_event_t *>(event)->window;
        break;
    case XCB_DESTROY_NOTIFY:
        window = reinterpret_cast<const xcb_destroy_notify_event_t *>(event)->window;
        break;
    case XCB_MAP_NOTIFY:
        window = reinterpret_cast<const xcb_map_notify_event_t *>(event)->window;
        break;
    case XCB_REPARENT_NOTIFY:
        window = reinterpret_cast<const xcb_reparent_notify_event_t *>(event)->window;
        if (window == m_window)
            findFrame();
        break;
    case XCB_CIRCULATE_NOTIFY:
        break;
    default:
        return;
    }
    if (window == m_window || window == m_frame) {
        const bool was = std::exchange(m_isViewable, m_server.isViewable(m_window));
        tell(was && !m_isViewable ? Change::Moved : Change::Perhaps);
    } else if (!m_panels.panelWith(window)) {
        tell(Change::Perhaps);
    }
}

void X11WindowWatch::handleConfigure(const xcb_configure_notify_event_t &event)
{
    const QRect place(event.x, event.y, event.width, event.height);
    if (event.window == m_window) {
        // Its own position is that in the frame, or comes from the window manager: the frame's
        // events tell it.
        const bool isResized = std::exchange(m_size, place.size()) != place.size();
        if (isResized)
            tell(Change::Moved);
    }
    if (event.window == m_frame) {
        if (event.response_type & 0x80)
            return; // from the window manager, for a window without a frame of its own
        const bool isElsewhere = std::exchange(m_framePlace, place) != place;
        tell(isElsewhere ? Change::Moved : Change::Perhaps);
    } else if (event.window != m_window && !m_panels.panelWith(event.window)) {
        tell(Change::Perhaps);
    }
}

bool X11WindowWatch::isViewable()
{
    return m_isViewable;
}

bool X11WindowWatch::isCovered(const QRect &place)
{
    if (m_window == XCB_NONE)
        return false;
    const QList<xcb_window_t> bottomToTop = m_server.childrenOf(m_server.root());
    const qsizetype own = bottomToTop.indexOf(m_frame);
    for (qsizetype i = own + 1; own >= 0 && i < bottomToTop.size(); ++i) {
        const xcb_window_t above = bottomToTop[i];
        // Menus and the like cover the button as they cover the window.
        if (!m_panels.panelWith(above) &&
            m_server.placeOf(above).value_or(QRect()).intersects(place) &&
            m_server.isApplicationTopLevel(above) && solidPart(above).intersects(place))
            return true;
    }
    return false;
}

QRect X11WindowWatch::solidPart(xcb_window_t topLevel)
{
    constexpr int deepestClient = 2; // frame, wrapper, application
    const QRect place = m_server.placeOf(topLevel).value_or(QRect());
    QList<xcb_window_t> level{topLevel};
    for (int depth = 0; depth <= deepestClient; ++depth) {
        QList<xcb_window_t> next;
        for (const xcb_window_t window : std::as_const(level)) {
            // Left, right, top, bottom: a shadow that the program draws.
            const QList<quint32> shadow = m_server.items(window, "_GTK_FRAME_EXTENTS");
            if (shadow.size() >= 4)
                return place.marginsRemoved(
                    QMargins(int(shadow[0]), int(shadow[2]), int(shadow[1]), int(shadow[3])));
            next += m_server.childrenOf(window);
        }
        level = next;
    }
    return place;
}

} // namespace platform::linux_
