// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/XcbConnection.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <QSocketNotifier>

#include <X11/Xlib.h>
#include <algorithm>
#include <xcb/res.h>

namespace platform::linux_
{

namespace
{

QNativeInterface::QX11Application *x11Application()
{
    return qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
}

xcb_screen_t *screenOf(xcb_connection_t *connection, int number)
{
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; it.rem > 1 && number > 0; --number)
        xcb_screen_next(&it);
    return it.data;
}

// More than any property that we read holds.
constexpr quint32 maxItems = 4096;

} // namespace

bool XcbConnection::canConnect()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool connected = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return connected;
}

std::unique_ptr<XcbConnection> XcbConnection::open()
{
    auto *x11 = x11Application();
    if (!x11)
        return {};
    int screenNumber = 0;
    xcb_connection_t *connection = xcb_connect(DisplayString(x11->display()), &screenNumber);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return {};
    }
    return std::unique_ptr<XcbConnection>(new XcbConnection(connection, screenNumber));
}

XcbConnection::XcbConnection(xcb_connection_t *connection, int screenNumber)
    : m_connection(connection)
    , m_screenNumber(screenNumber)
{
    const xcb_screen_t *screen = screenOf(m_connection, screenNumber);
    m_root = screen->root;

    m_clock = xcb_generate_id(m_connection);
    const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_clock, m_root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(m_connection);
    askForResources();

    auto *notifier =
        new QSocketNotifier(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &XcbConnection::dispatch);
    // Events that came in while a reply was awaited are in xcb's queue and no longer readable.
    if (auto *dispatcher = QAbstractEventDispatcher::instance())
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this,
                &XcbConnection::dispatch);
}

XcbConnection::~XcbConnection()
{
    for (xcb_generic_event_t *event : std::as_const(m_postponed))
        std::free(event);
    xcb_disconnect(m_connection);
}

xcb_connection_t *XcbConnection::toolkit() const
{
    auto *x11 = x11Application();
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t XcbConnection::atom(const QByteArray &name)
{
    if (const auto it = m_atoms.constFind(name); it != m_atoms.cend())
        return *it;
    const auto cookie =
        xcb_intern_atom(m_connection, false, uint16_t(name.size()), name.constData());
    const XcbPtr<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(m_connection, cookie, nullptr));
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    m_atoms.insert(name, atom);
    return atom;
}

QList<quint32> XcbConnection::items(xcb_window_t window, const QByteArray &property)
{
    const auto cookie = xcb_get_property(m_connection, false, window, atom(property),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, maxItems);
    const XcbPtr<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *first = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / 4};
}

QByteArray XcbConnection::bytes(xcb_window_t window, const QByteArray &property)
{
    const auto cookie = xcb_get_property(m_connection, false, window, atom(property),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, maxItems);
    const XcbPtr<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

bool XcbConnection::windowManagerSupports(const QByteArray &hint)
{
    // A window manager that died leaves its properties on the root window; the check window that
    // names itself is gone then (EWMH, _NET_SUPPORTING_WM_CHECK).
    const auto check = item(m_root, "_NET_SUPPORTING_WM_CHECK");
    if (!check || item(*check, "_NET_SUPPORTING_WM_CHECK") != check)
        return false;
    return items(m_root, "_NET_SUPPORTED").contains(atom(hint));
}

void XcbConnection::askForResources()
{
    const xcb_query_extension_reply_t *extension =
        xcb_get_extension_data(m_connection, &xcb_res_id);
    if (!extension || !extension->present)
        return;
    const XcbPtr<xcb_res_query_version_reply_t> version(xcb_res_query_version_reply(
        m_connection, xcb_res_query_version(m_connection, 1, 2), nullptr));
    m_hasResources = version && std::pair(version->server_major, version->server_minor) >=
                                    std::pair<quint16, quint16>(1, 2);
}

std::optional<std::int32_t> XcbConnection::processOf(xcb_window_t window)
{
    if (!m_hasResources) {
        const auto claimed = item(window, "_NET_WM_PID");
        return claimed ? std::optional(std::int32_t(*claimed)) : std::nullopt;
    }
    const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const XcbPtr<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        m_connection, xcb_res_query_client_ids(m_connection, 1, &spec), nullptr));
    if (!reply)
        return {};
    for (auto it = xcb_res_query_client_ids_ids_iterator(reply.get()); it.rem > 0;
         xcb_res_client_id_value_next(&it)) {
        if ((it.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) &&
            xcb_res_client_id_value_value_length(it.data) > 0)
            return std::int32_t(*xcb_res_client_id_value_value(it.data));
    }
    return {};
}

bool XcbConnection::isViewable(xcb_window_t window)
{
    const XcbPtr<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        m_connection, xcb_get_window_attributes(m_connection, window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::optional<QRect> XcbConnection::placeOf(xcb_window_t window)
{
    const auto sizeCookie = xcb_get_geometry(m_connection, window);
    const auto placeCookie = xcb_translate_coordinates(m_connection, window, m_root, 0, 0);
    const XcbPtr<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(m_connection, sizeCookie, nullptr));
    const XcbPtr<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(m_connection, placeCookie, nullptr));
    if (!size || !place)
        return {};
    return QRect(place->dst_x, place->dst_y, size->width, size->height);
}

xcb_window_t XcbConnection::parentOf(xcb_window_t window)
{
    const XcbPtr<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr));
    return tree ? tree->parent : xcb_window_t(XCB_NONE);
}

QList<xcb_window_t> XcbConnection::childrenOf(xcb_window_t window)
{
    const XcbPtr<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr));
    if (!tree)
        return {};
    const xcb_window_t *first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
}

bool XcbConnection::isApplicationTopLevel(xcb_window_t window)
{
    return holdsApplication(window, 0);
}

// Menus, tool tips and screen lockers are override-redirect; so are some window managers' frames,
// which are known by the application's window in them: it carries WM_STATE (ICCCM 4.1.3.1).
bool XcbConnection::holdsApplication(xcb_window_t window, int depth)
{
    const XcbPtr<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        m_connection, xcb_get_window_attributes(m_connection, window), nullptr));
    if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
        attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
        return false;
    if ((depth == 0 && !attributes->override_redirect) || item(window, "WM_STATE"))
        return true;
    constexpr int deepestClient = 2; // frame, wrapper, application
    if (depth == deepestClient)
        return false;
    const QList<xcb_window_t> children = childrenOf(window);
    return std::any_of(children.cbegin(), children.cend(), [this, depth](xcb_window_t child) {
        return holdsApplication(child, depth + 1);
    });
}

xcb_window_t XcbConnection::inputFocus()
{
    const XcbPtr<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return reply ? reply->focus : xcb_window_t(XCB_NONE);
}

void XcbConnection::setInputFocus(xcb_window_t window, xcb_timestamp_t time)
{
    const auto cookie =
        xcb_set_input_focus_checked(m_connection, XCB_INPUT_FOCUS_PARENT, window, time);
    const XcbPtr<xcb_generic_error_t> refused(xcb_request_check(m_connection, cookie));
}

xcb_timestamp_t XcbConnection::serverTime()
{
    // ICCCM 2.1: a change of a property, even by nothing, reports the time.
    xcb_change_property(m_connection, XCB_PROP_MODE_APPEND, m_clock, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, 0, nullptr);
    inputFocus(); // the answer comes after the event
    catchUp();
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    m_postponed.removeIf([&](xcb_generic_event_t *event) {
        const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
        if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY || change->window != m_clock)
            return false;
        time = change->time;
        std::free(event);
        return true;
    });
    return time;
}

quint32 XcbConnection::selected(xcb_window_t window) const
{
    quint32 mask = XCB_EVENT_MASK_NO_EVENT;
    for (auto [it, end] = m_masks.equal_range(window); it != end; ++it)
        mask |= *it;
    return mask;
}

bool XcbConnection::select(xcb_window_t window, quint32 eventMask)
{
    const quint32 mask = selected(window) | eventMask;
    const auto cookie =
        xcb_change_window_attributes_checked(m_connection, window, XCB_CW_EVENT_MASK, &mask);
    if (const XcbPtr<xcb_generic_error_t> error{xcb_request_check(m_connection, cookie)})
        return false;
    m_masks.insert(window, eventMask);
    return true;
}

void XcbConnection::deselect(xcb_window_t window, quint32 eventMask)
{
    const auto it = m_masks.constFind(window, eventMask);
    if (it == m_masks.cend())
        return;
    m_masks.erase(it);
    const quint32 mask = selected(window);
    const auto cookie =
        xcb_change_window_attributes_checked(m_connection, window, XCB_CW_EVENT_MASK, &mask);
    xcb_discard_reply(m_connection, cookie.sequence); // the window may be gone
    xcb_flush(m_connection);
}

void XcbConnection::sendToWindowManager(xcb_window_t window, const QByteArray &type,
                                        std::initializer_list<quint32> data)
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(type);
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(m_connection, false, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection);
}

void XcbConnection::catchUp()
{
    while (xcb_generic_event_t *event = xcb_poll_for_event(m_connection)) {
        m_postponed.append(event);
        Q_EMIT eventNoticed(event);
    }
}

void XcbConnection::dispatch()
{
    for (catchUp(); !m_postponed.isEmpty(); catchUp()) {
        const XcbPtr<xcb_generic_event_t> event(m_postponed.takeFirst());
        Q_EMIT eventReceived(event.get());
    }
    xcb_flush(m_connection);
}

} // namespace platform::linux_
