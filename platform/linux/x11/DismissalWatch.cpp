// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/DismissalWatch.h"

#include "platform/linux/x11/FloatingPanels.h"

#include <QMetaObject>
#include <QTimer>

#include <xcb/xinput.h>

#include <chrono>
#include <utility>

namespace platform::linux_
{

namespace
{

constexpr xcb_keysym_t escapeKeysym = 0xff1b; // XK_Escape
/// Buttons 4 to 7 are the wheel.
constexpr quint32 firstWheelButton = 4;
constexpr quint32 lastWheelButton = 7;
constexpr std::chrono::milliseconds afterClick{250};

} // namespace

DismissalWatch::DismissalWatch(XcbConnection &connection, FloatingPanels &panels)
    : m_connection(connection)
    , m_panels(panels)
{
    connect(&m_panels, &FloatingPanels::leaving, this, [this](QWidget *panel) {
        if (panel == m_panel)
            stop();
    });
    xcb_connection_t *c = m_connection.get();
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(c, &xcb_input_id);
    if (!extension || !extension->present)
        return;
    const XcbPtr<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(c, xcb_input_xi_query_version(c, 2, 1), nullptr));
    if (!version || version->major_version < 2)
        return;
    m_xinput = extension->major_opcode;
    connect(&m_connection, &XcbConnection::eventReceived, this, &DismissalWatch::handle);
}

void DismissalWatch::watch(QWidget *panel, std::function<void()> dismissed)
{
    m_panel = panel;
    m_dismissed = std::move(dismissed);
    m_escape = std::make_unique<KeyGrab>(m_connection, escapeKeysym, 0);
    // Not from within the grab's own signal: closing the panel ends the grab.
    connect(m_escape.get(), &KeyGrab::pressed, this, &DismissalWatch::dismiss,
            Qt::QueuedConnection);
    selectClicks(true);
}

void DismissalWatch::stop()
{
    m_panel.clear();
    m_dismissed = {};
    m_escape.reset();
    selectClicks(false);
}

void DismissalWatch::selectClicks(bool wanted)
{
    if (!m_xinput)
        return;
    struct {
        xcb_input_event_mask_t head;
        quint32 mask;
    } events{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
             wanted ? quint32(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS) : 0U};
    xcb_connection_t *c = m_connection.get();
    xcb_input_xi_select_events(c, m_connection.root(), 1, &events.head);
    xcb_flush(c);
}

void DismissalWatch::handle(const xcb_generic_event_t *event)
{
    if (!m_panel || (event->response_type & 0x7f) != XCB_GE_GENERIC)
        return;
    const auto *generic = reinterpret_cast<const xcb_ge_generic_event_t *>(event);
    if (generic->extension != m_xinput || generic->event_type != XCB_INPUT_RAW_BUTTON_PRESS)
        return;
    const auto *press = reinterpret_cast<const xcb_input_raw_button_press_event_t *>(event);
    if (press->detail >= firstWheelButton && press->detail <= lastWheelButton)
        return;
    xcb_connection_t *c = m_connection.get();
    const XcbPtr<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(c, xcb_query_pointer(c, m_connection.root()), nullptr));
    // The window manager handles the click first: the focus is not taken back from the window that
    // was clicked into.
    if (pointer && !m_panels.panelWith(pointer->child))
        QTimer::singleShot(afterClick, this, &DismissalWatch::dismiss);
}

void DismissalWatch::dismiss()
{
    // The panel may have gone since Escape was pressed.
    if (const auto dismissed = m_dismissed)
        dismissed();
}

} // namespace platform::linux_
