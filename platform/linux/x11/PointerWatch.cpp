// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/PointerWatch.h"

#include <xcb/xinput.h>

namespace platform::linux_
{

PointerWatch::PointerWatch(XcbConnection &connection)
    : m_connection(connection)
{
    xcb_connection_t *c = m_connection.get();
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(c, &xcb_input_id);
    if (!extension || !extension->present)
        return;
    const XcbPtr<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(c, xcb_input_xi_query_version(c, 2, 1), nullptr));
    if (!version || version->major_version < 2)
        return;
    m_xinput = extension->major_opcode;
    connect(&m_connection, &XcbConnection::eventReceived, this, &PointerWatch::handle);
}

void PointerWatch::setPressesWanted(const QObject *by, bool wanted)
{
    if (wanted == m_presses.contains(by))
        return;
    if (wanted)
        m_presses.insert(by);
    else
        m_presses.remove(by);
    select();
}

void PointerWatch::select()
{
    if (!m_xinput)
        return;
    struct {
        xcb_input_event_mask_t head;
        quint32 mask;
    } events{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
             m_presses.isEmpty() ? 0U : quint32(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS)};
    xcb_connection_t *c = m_connection.get();
    xcb_input_xi_select_events(c, m_connection.root(), 1, &events.head);
    xcb_flush(c);
}

void PointerWatch::handle(const xcb_generic_event_t *event)
{
    if ((event->response_type & 0x7f) != XCB_GE_GENERIC)
        return;
    const auto *generic = reinterpret_cast<const xcb_ge_generic_event_t *>(event);
    if (generic->extension != m_xinput || generic->event_type != XCB_INPUT_RAW_BUTTON_PRESS)
        return;
    const auto *press = reinterpret_cast<const xcb_input_raw_button_press_event_t *>(event);
    Q_EMIT pressed(press->detail, press->time);
}

} // namespace platform::linux_
