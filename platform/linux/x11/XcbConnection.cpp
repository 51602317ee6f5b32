// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/XcbConnection.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <QSocketNotifier>

#include <X11/Xlib.h>

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
constexpr quint32 maximumItems = 4096;

} // namespace

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
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, maximumItems);
    const XcbPtr<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *first = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / 4};
}

std::optional<quint32> XcbConnection::item(xcb_window_t window, const QByteArray &property)
{
    const QList<quint32> list = items(window, property);
    return list.isEmpty() ? std::nullopt : std::optional(list.first());
}

QByteArray XcbConnection::bytes(xcb_window_t window, const QByteArray &property)
{
    const auto cookie = xcb_get_property(m_connection, false, window, atom(property),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, maximumItems);
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

xcb_window_t XcbConnection::inputFocus()
{
    const XcbPtr<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return reply ? reply->focus : xcb_window_t(XCB_NONE);
}

xcb_timestamp_t XcbConnection::serverTime()
{
    // ICCCM 2.1: a change of a property, even by nothing, reports the time.
    xcb_change_property(m_connection, XCB_PROP_MODE_APPEND, m_clock, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, 0, nullptr);
    inputFocus(); // the answer comes after the event
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    while (xcb_generic_event_t *event = xcb_poll_for_queued_event(m_connection)) {
        const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY && change->window == m_clock) {
            time = change->time;
            std::free(event);
        } else {
            m_postponed.append(event);
        }
    }
    return time;
}

bool XcbConnection::select(xcb_window_t window, quint32 eventMask)
{
    const quint32 mask = m_masks.value(window) | eventMask;
    const auto cookie =
        xcb_change_window_attributes_checked(m_connection, window, XCB_CW_EVENT_MASK, &mask);
    if (const XcbPtr<xcb_generic_error_t> error{xcb_request_check(m_connection, cookie)})
        return false;
    m_masks.insert(window, mask);
    return true;
}

void XcbConnection::deselect(xcb_window_t window)
{
    if (!m_masks.remove(window))
        return;
    const quint32 none = XCB_EVENT_MASK_NO_EVENT;
    const auto cookie =
        xcb_change_window_attributes_checked(m_connection, window, XCB_CW_EVENT_MASK, &none);
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

void XcbConnection::dispatch()
{
    while (true) {
        XcbPtr<xcb_generic_event_t> event(m_postponed.isEmpty() ? xcb_poll_for_event(m_connection)
                                                                : m_postponed.takeFirst());
        if (!event)
            break;
        Q_EMIT eventReceived(event.get());
    }
    xcb_flush(m_connection);
}

} // namespace platform::linux_
