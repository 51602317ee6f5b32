// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/X11ActiveWindow.h"

#include <cstdlib>
#include <cstring>
#include <xcb/res.h>

namespace platform::linux_
{

namespace
{

/// XCB hands out memory of the C library.
struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

template <typename Reply> using Owned = std::unique_ptr<Reply, Free>;

template <typename Reply> Owned<Reply> owned(Reply *reply)
{
    return Owned<Reply>(reply);
}

} // namespace

X11ActiveWindow::X11ActiveWindow(const QByteArray &display)
{
    int screenNumber = 0;
    m_connection.reset(
        xcb_connect(display.isEmpty() ? nullptr : display.constData(), &screenNumber));
    xcb_connection_t *const connection = m_connection.get();
    if (xcb_connection_has_error(connection))
        return;
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 1 && screenNumber > 0; --screenNumber)
        xcb_screen_next(&screens);
    m_root = screens.data->root;
    m_netActiveWindow = atom("_NET_ACTIVE_WINDOW");
    m_netWmPid = atom("_NET_WM_PID");
    m_gtkFrameExtents = atom("_GTK_FRAME_EXTENTS");

    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection, m_root, XCB_CW_EVENT_MASK, &mask);
    const auto *extension = xcb_get_extension_data(connection, &xcb_res_id);
    if (extension && extension->present) {
        const auto version = owned(xcb_res_query_version_reply(
            connection, xcb_res_query_version(connection, 1, 2), nullptr));
        m_hasResources = version && (version->server_major > 1 ||
                                     (version->server_major == 1 && version->server_minor >= 2));
    }
}

X11ActiveWindow::~X11ActiveWindow() = default;

xcb_atom_t X11ActiveWindow::atom(const char *name)
{
    const auto reply = owned(xcb_intern_atom_reply(
        m_connection.get(),
        xcb_intern_atom(m_connection.get(), false, std::uint16_t(std::strlen(name)), name),
        nullptr));
    return reply ? reply->atom : XCB_NONE;
}

std::optional<std::uint32_t> X11ActiveWindow::property(xcb_window_t window, xcb_atom_t name,
                                                       xcb_atom_t type)
{
    const auto reply = owned(xcb_get_property_reply(
        m_connection.get(), xcb_get_property(m_connection.get(), false, window, name, type, 0, 1),
        nullptr));
    if (!reply || reply->type != type || reply->format != 32 ||
        xcb_get_property_value_length(reply.get()) < 4)
        return std::nullopt;
    std::uint32_t value = 0;
    std::memcpy(&value, xcb_get_property_value(reply.get()), sizeof(value));
    return value;
}

QList<std::int32_t> X11ActiveWindow::processes(xcb_window_t window)
{
    QList<std::int32_t> pids;
    if (m_hasResources) {
        const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        const auto reply = owned(xcb_res_query_client_ids_reply(
            m_connection.get(), xcb_res_query_client_ids(m_connection.get(), 1, &spec), nullptr));
        if (reply) {
            auto ids = xcb_res_query_client_ids_ids_iterator(reply.get());
            for (; ids.rem > 0; xcb_res_client_id_value_next(&ids)) {
                if (xcb_res_client_id_value_value_length(ids.data) > 0)
                    pids.append(std::int32_t(*xcb_res_client_id_value_value(ids.data)));
            }
        }
    }
    const auto told = property(window, m_netWmPid, XCB_ATOM_CARDINAL);
    if (told && !pids.contains(std::int32_t(*told)))
        pids.append(std::int32_t(*told));
    return pids;
}

void X11ActiveWindow::refresh()
{
    xcb_connection_t *const connection = m_connection.get();
    while (const auto event = owned(xcb_poll_for_event(connection))) {
        if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
            continue;
        const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(event.get());
        m_stale = m_stale || change->atom == m_netActiveWindow;
    }
    // A window without a process may only not have said it yet.
    if (!m_stale && !(m_window && m_window->pids.isEmpty()))
        return;
    m_stale = false;
    const auto active = property(m_root, m_netActiveWindow, XCB_ATOM_WINDOW);
    m_told = active.has_value();
    if (active && *active != XCB_NONE)
        m_window = Window{*active, processes(*active)};
    else
        m_window.reset();
}

bool X11ActiveWindow::isAvailable()
{
    if (m_root == XCB_NONE || xcb_connection_has_error(m_connection.get()))
        return false;
    refresh();
    return m_told;
}

std::optional<ActiveWindow::Window> X11ActiveWindow::activeWindow()
{
    return isAvailable() ? m_window : std::nullopt;
}

std::optional<WindowPlace> X11ActiveWindow::geometry(std::uint32_t window)
{
    if (m_root == XCB_NONE || xcb_connection_has_error(m_connection.get()))
        return std::nullopt;
    xcb_connection_t *const connection = m_connection.get();
    const auto sizeCookie = xcb_get_geometry(connection, window);
    const auto placeCookie = xcb_translate_coordinates(connection, window, m_root, 0, 0);
    const auto shadowCookie =
        xcb_get_property(connection, false, window, m_gtkFrameExtents, XCB_ATOM_CARDINAL, 0, 4);
    const auto size = owned(xcb_get_geometry_reply(connection, sizeCookie, nullptr));
    const auto place = owned(xcb_translate_coordinates_reply(connection, placeCookie, nullptr));
    const auto shadow = owned(xcb_get_property_reply(connection, shadowCookie, nullptr));
    if (!size || !place)
        return std::nullopt;
    const QRect surface(place->dst_x, place->dst_y, size->width, size->height);
    QRect contents = surface;
    if (shadow && shadow->format == 32 && xcb_get_property_value_length(shadow.get()) >= 16) {
        // Left, right, top, bottom.
        std::uint32_t edges[4] = {};
        std::memcpy(edges, xcb_get_property_value(shadow.get()), sizeof(edges));
        contents.adjust(int(edges[0]), int(edges[2]), -int(edges[1]), -int(edges[3]));
    }
    return WindowPlace{contents, surface};
}

} // namespace platform::linux_
