// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/StartupNotification.h"

#include <algorithm>
#include <cstring>

namespace platform::linux_
{

void completeStartup(XcbConnection &connection, const QByteArray &startupId)
{
    QByteArray quoted = startupId;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    const QByteArray text = "remove: ID=\"" + quoted + '"';

    xcb_connection_t *c = connection.get();
    // The pieces of one message are told from other messages by the window that sends them.
    const xcb_window_t sender = xcb_generate_id(c);
    xcb_create_window(c, XCB_COPY_FROM_PARENT, sender, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);

    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8;
    message.window = sender;
    message.type = connection.atom("_NET_STARTUP_INFO_BEGIN");
    constexpr qsizetype pieceSize = sizeof(message.data.data8);
    // The text ends with a NUL, which must be sent too.
    for (qsizetype at = 0; at <= text.size(); at += pieceSize) {
        std::memset(message.data.data8, 0, size_t(pieceSize));
        std::memcpy(message.data.data8, text.constData() + at,
                    size_t(std::min(pieceSize, text.size() - at)));
        xcb_send_event(c, false, connection.root(), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char *>(&message));
        message.type = connection.atom("_NET_STARTUP_INFO");
    }
    xcb_destroy_window(c, sender);
    xcb_flush(c);
}

} // namespace platform::linux_
