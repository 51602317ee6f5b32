// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/DismissalWatch.h"

#include "platform/linux/x11/FloatingPanels.h"
#include "platform/linux/x11/KeyboardLoan.h"
#include "platform/linux/x11/PointerWatch.h"

#include <utility>

namespace platform::linux_
{

namespace
{

constexpr xcb_keysym_t escapeKeysym = 0xff1b; // XK_Escape

} // namespace

DismissalWatch::DismissalWatch(XcbConnection &connection, FloatingPanels &panels,
                               PointerWatch &pointer, KeyboardLoan &keyboard)
    : m_connection(connection)
    , m_panels(panels)
    , m_pointer(pointer)
    , m_keyboard(keyboard)
{
    connect(&m_panels, &FloatingPanels::leaving, this, [this](QWidget *panel) {
        if (panel == m_panel)
            stop();
    });
    connect(&m_pointer, &PointerWatch::pressed, this, &DismissalWatch::notePress);
}

void DismissalWatch::watch(QWidget *panel, std::function<void()> dismissed)
{
    m_panel = panel;
    m_dismissed = std::move(dismissed);
    m_escape = std::make_unique<KeyGrab>(m_connection, escapeKeysym, 0);
    // Not from within the grab's own signal: closing the panel ends the grab.
    connect(m_escape.get(), &KeyGrab::pressed, this, &DismissalWatch::dismiss,
            Qt::QueuedConnection);
    m_pointer.setPressesWanted(this, true);
}

void DismissalWatch::stop()
{
    m_panel.clear();
    m_dismissed = {};
    m_escape.reset();
    m_pointer.setPressesWanted(this, false);
}

void DismissalWatch::notePress(quint32 button, xcb_timestamp_t time)
{
    if (!m_panel || PointerWatch::isWheel(button))
        return;
    xcb_connection_t *c = m_connection.get();
    const XcbPtr<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(c, xcb_query_pointer(c, m_connection.root()), nullptr));
    if (!pointer || m_panels.panelWith(pointer->child))
        return;
    m_keyboard.yieldTo(time);
    dismiss();
}

void DismissalWatch::dismiss()
{
    // The panel may have gone since Escape was pressed.
    if (const auto dismissed = m_dismissed)
        dismissed();
}

} // namespace platform::linux_
