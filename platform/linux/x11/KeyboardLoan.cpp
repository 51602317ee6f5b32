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

constexpr quint32 lenderEvents = XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
const QByteArray activeWindowProperty = QByteArrayLiteral("_NET_ACTIVE_WINDOW");

// EWMH: the request comes from the user, by way of a pager or task bar.
constexpr quint32 sourcePager = 2;

} // namespace

KeyboardLoan::KeyboardLoan(WindowServer &server, FloatingPanels &panels)
    : m_server(server)
    , m_panels(panels)
{
    m_insist.setInterval(insistAfter);
    connect(&m_insist, &QTimer::timeout, this, &KeyboardLoan::insist);
    m_deadline.setSingleShot(true);
    m_deadline.setInterval(giveUpAfter);
    connect(&m_deadline, &QTimer::timeout, this, [this] { finish(false); });

    connect(&m_server, &WindowServer::eventReceived, this, &KeyboardLoan::handle);
    m_server.select(m_server.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
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
    const xcb_window_t focus = m_server.inputFocus();
    if (!m_panels.panelWith(focus)) {
        m_lender = focus;
        const xcb_window_t active =
            m_server.item(m_server.root(), activeWindowProperty).value_or(XCB_NONE);
        // Some window managers name a panel as soon as it is shown.
        m_activeWindow = m_panels.panelWith(active) ? xcb_window_t(XCB_NONE) : active;
    }
    m_formerLender = XCB_NONE;
    m_clickTime = XCB_CURRENT_TIME;
    m_isLost = false;
    watchBorrower(panel);
    panel->windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, false);
    m_server.setInputFocus(m_borrowerWindow);
}

void KeyboardLoan::watchBorrower(QWidget *panel)
{
    const xcb_window_t window = panel ? xcb_window_t(panel->internalWinId()) : XCB_NONE;
    if (m_borrower && m_borrower != panel && m_borrower->windowHandle())
        m_borrower->windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus);
    m_borrower = panel;
    if (window == m_borrowerWindow)
        return;
    if (m_borrowerWindow != XCB_NONE)
        m_server.deselect(m_borrowerWindow, XCB_EVENT_MASK_FOCUS_CHANGE);
    m_borrowerWindow = window;
    if (window != XCB_NONE)
        m_server.select(window, XCB_EVENT_MASK_FOCUS_CHANGE);
}

void KeyboardLoan::giveBack(std::function<void(bool)> completion)
{
    if (m_lender == XCB_NONE) {
        m_clickTime = XCB_CURRENT_TIME;
        // Where giving back has failed before, the lender may have got the keyboard since.
        const bool isFine = m_formerLender == XCB_NONE || isWith(m_formerLender);
        if (completion)
            completion(isFine);
        return;
    }
    if (completion)
        m_completions.push_back(std::move(completion));
    if (m_returning)
        return;
    m_returning = true;
    if (m_lender != XCB_INPUT_FOCUS_POINTER_ROOT && !m_server.select(m_lender, lenderEvents)) {
        finish(false);
        return;
    }
    if (m_isLost || isElsewhere()) {
        finish(isWith(m_lender));
        return;
    }
    m_insist.start();
    m_deadline.start();
    // A window that is not viewable does not take it; minimised, it may come back.
    m_server.setInputFocus(m_lender,
                           m_clickTime == XCB_CURRENT_TIME ? XCB_CURRENT_TIME : m_clickTime - 1);
    check();
}

bool KeyboardLoan::isOut()
{
    return m_returning ||
           (m_borrower && !m_isLost && m_panels.panelWith(m_server.inputFocus()) != nullptr);
}

void KeyboardLoan::handle(const xcb_generic_event_t *event)
{
    switch (event->response_type & 0x7f) {
    case XCB_DESTROY_NOTIFY:
        if (m_returning &&
            reinterpret_cast<const xcb_destroy_notify_event_t *>(event)->window == m_lender)
            finish(false);
        break;
    case XCB_FOCUS_OUT: {
        const auto *out = reinterpret_cast<const xcb_focus_out_event_t *>(event);
        // While the panel is shown, nothing but another window that was given the focus takes it;
        // a grab takes it for a moment.
        if (!m_returning && out->event == m_borrowerWindow && out->mode != XCB_NOTIFY_MODE_GRAB &&
            out->mode != XCB_NOTIFY_MODE_UNGRAB && m_borrower && m_borrower->isVisible() &&
            isElsewhere())
            m_isLost = true;
        check();
        break;
    }
    case XCB_FOCUS_IN:
    case XCB_PROPERTY_NOTIFY:
        check();
        break;
    default:
        break;
    }
}

void KeyboardLoan::check()
{
    if (!m_returning || !isWith(m_lender))
        return;
    // A window manager notices that the keyboard was without a window and may move it about once
    // more. When it calls the lender active it has done so.
    if (m_activeWindow != XCB_NONE && m_server.windowManagerSupports(activeWindowProperty) &&
        m_server.item(m_server.root(), activeWindowProperty) != m_activeWindow)
        return;
    finish(true);
}

void KeyboardLoan::insist()
{
    if (isElsewhere() && !isWith(m_lender)) {
        finish(false);
        return;
    }
    // A late request would undo what the click has brought about.
    if (m_clickTime == XCB_CURRENT_TIME && m_activeWindow != XCB_NONE &&
        m_server.windowManagerSupports(activeWindowProperty))
        m_server.sendToWindowManager(m_activeWindow, activeWindowProperty,
                                     {sourcePager, m_server.serverTime(), 0});
    check();
}

void KeyboardLoan::finish(bool returned)
{
    m_insist.stop();
    m_deadline.stop();
    if (m_returning && m_lender != XCB_INPUT_FOCUS_POINTER_ROOT)
        m_server.deselect(m_lender, lenderEvents);
    m_returning = false;
    m_clickTime = XCB_CURRENT_TIME;
    m_isLost = false;
    m_formerLender = returned ? xcb_window_t(XCB_NONE) : m_lender;
    m_lender = XCB_NONE;
    m_activeWindow = XCB_NONE;
    if (m_borrower && m_borrower->windowHandle())
        m_borrower->windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus);
    watchBorrower(nullptr);
    for (const auto &completion : std::exchange(m_completions, {}))
        completion(returned);
}

bool KeyboardLoan::isWith(xcb_window_t lender)
{
    xcb_window_t focus = m_server.inputFocus();
    while (focus != lender && focus > XCB_INPUT_FOCUS_POINTER_ROOT && focus != m_server.root())
        focus = m_server.parentOf(focus);
    return focus == lender;
}

/// Whether a window of another program has the focus. Without any, it falls to the root window, to
/// none at all, or to a window that the window manager keeps outside the screen.
bool KeyboardLoan::isElsewhere()
{
    const xcb_window_t focus = m_server.inputFocus();
    if (focus <= XCB_INPUT_FOCUS_POINTER_ROOT || focus == m_server.root() ||
        m_panels.panelWith(focus))
        return false;
    xcb_window_t top = focus;
    for (xcb_window_t parent = m_server.parentOf(top);
         parent != XCB_NONE && parent != m_server.root(); parent = m_server.parentOf(top))
        top = parent;
    const auto place = m_server.placeOf(top);
    return place && place->right() >= 0 && place->bottom() >= 0;
}

} // namespace platform::linux_
