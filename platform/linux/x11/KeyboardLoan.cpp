// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/KeyboardLoan.h"

#include "platform/linux/x11/FloatingPanels.h"

#include <QWindow>

#include <chrono>
#include <utility>

namespace platform::linux_
{

namespace
{

using namespace std::chrono_literals;

// A window manager that still reacts to the panel's disappearance is done by then.
constexpr std::chrono::milliseconds insistAfter = 200ms;
constexpr std::chrono::milliseconds giveUpAfter = 2s;

// EWMH: the request comes from the user, by way of a pager or task bar.
constexpr quint32 sourcePager = 2;

} // namespace

KeyboardLoan::KeyboardLoan(XcbConnection &connection, FloatingPanels &panels)
    : m_connection(connection)
    , m_panels(panels)
{
    m_insist.setInterval(insistAfter);
    connect(&m_insist, &QTimer::timeout, this, [this] {
        if (m_activeWindow != XCB_NONE && m_connection.windowManagerSupports("_NET_ACTIVE_WINDOW"))
            m_connection.sendToWindowManager(m_activeWindow, "_NET_ACTIVE_WINDOW",
                                             {sourcePager, m_connection.serverTime(), 0});
        check();
    });
    m_deadline.setSingleShot(true);
    m_deadline.setInterval(giveUpAfter);
    connect(&m_deadline, &QTimer::timeout, this, [this] { finish(false); });

    connect(&m_connection, &XcbConnection::eventReceived, this, &KeyboardLoan::handle);
    m_connection.select(m_connection.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    connect(&m_panels, &FloatingPanels::leaving, this, [this](QWidget *panel) {
        if (!m_returning && panel == m_borrower)
            giveBack({});
    });
}

KeyboardLoan::~KeyboardLoan() = default;

void KeyboardLoan::take(QWidget *panel)
{
    if (!m_panels.canTakeKeyboard(panel) || !panel->isVisible() || !panel->windowHandle())
        return;
    if (m_returning)
        finish(false);
    const xcb_window_t focus = m_connection.inputFocus();
    if (!m_panels.panelWith(focus)) {
        if (m_lender != XCB_NONE)
            m_connection.deselect(m_lender);
        m_lender = focus;
        m_activeWindow =
            m_connection.item(m_connection.root(), "_NET_ACTIVE_WINDOW").value_or(XCB_NONE);
    }

    m_borrower = panel;
    panel->windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, false);
    // Not the time of the click: what took the focus last may be newer, and the server ignores
    // requests that are older.
    xcb_set_input_focus(m_connection.get(), XCB_INPUT_FOCUS_PARENT,
                        xcb_window_t(panel->internalWinId()), XCB_CURRENT_TIME);
    xcb_flush(m_connection.get());
}

void KeyboardLoan::giveBack(std::function<void(bool)> completion)
{
    if (m_lender == XCB_NONE) {
        if (completion)
            completion(true);
        return;
    }
    if (completion)
        m_completions.push_back(std::move(completion));
    if (m_returning)
        return;
    m_returning = true;

    if (m_lender != XCB_INPUT_FOCUS_POINTER_ROOT) {
        if (!m_connection.select(m_lender,
                                 XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY)) {
            finish(false);
            return;
        }
    }
    const auto cookie = xcb_set_input_focus_checked(m_connection.get(), XCB_INPUT_FOCUS_PARENT,
                                                    m_lender, XCB_CURRENT_TIME);
    // A window that is not viewable cannot take it (BadMatch); minimised, it may come back.
    const XcbPtr<xcb_generic_error_t> error(xcb_request_check(m_connection.get(), cookie));
    m_insist.start();
    m_deadline.start();
    check();
}

bool KeyboardLoan::isOut()
{
    return m_returning || m_panels.panelWith(m_connection.inputFocus());
}

void KeyboardLoan::handle(const xcb_generic_event_t *event)
{
    if (!m_returning)
        return;
    switch (event->response_type & 0x7f) {
    case XCB_DESTROY_NOTIFY:
        if (reinterpret_cast<const xcb_destroy_notify_event_t *>(event)->window == m_lender)
            finish(false);
        break;
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT:
    case XCB_PROPERTY_NOTIFY:
        check();
        break;
    default:
        break;
    }
}

void KeyboardLoan::check()
{
    if (!m_returning)
        return;
    const xcb_window_t focus = m_connection.inputFocus();
    if (focus != m_lender && !isInside(focus, m_lender))
        return;
    // A window manager notices that the keyboard was without a window and may move it about once
    // more. When it calls the lender active it has done so.
    if (m_activeWindow != XCB_NONE && m_connection.windowManagerSupports("_NET_ACTIVE_WINDOW") &&
        m_connection.item(m_connection.root(), "_NET_ACTIVE_WINDOW") != m_activeWindow)
        return;
    finish(true);
}

void KeyboardLoan::finish(bool returned)
{
    m_insist.stop();
    m_deadline.stop();
    m_returning = false;
    if (m_lender != XCB_NONE)
        m_connection.deselect(m_lender);
    m_lender = XCB_NONE;
    m_activeWindow = XCB_NONE;
    if (m_borrower && m_borrower->windowHandle())
        m_borrower->windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus);
    m_borrower.clear();
    for (const auto &completion : std::exchange(m_completions, {}))
        completion(returned);
}

bool KeyboardLoan::isInside(xcb_window_t window, xcb_window_t ancestor)
{
    while (window > XCB_INPUT_FOCUS_POINTER_ROOT && window != m_connection.root()) {
        if (window == ancestor)
            return true;
        const XcbPtr<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(
            m_connection.get(), xcb_query_tree(m_connection.get(), window), nullptr));
        if (!tree)
            break;
        window = tree->parent;
    }
    return false;
}

} // namespace platform::linux_
