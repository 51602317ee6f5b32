// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/InputWatch.h"

#include <array>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>

namespace platform::linux_
{

namespace
{

void selectRawEvents(XConnection &connection, bool wanted)
{
    std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
    if (wanted) {
        XISetMask(bits.data(), XI_RawKeyPress);
        XISetMask(bits.data(), XI_RawButtonPress);
    }
    XIEventMask mask{};
    mask.deviceid = XIAllMasterDevices;
    mask.mask_len = static_cast<int>(bits.size());
    mask.mask = bits.data();
    XISelectEvents(connection.display(), connection.root(), &mask, 1);
}

} // namespace

InputWatch::InputWatch(XConnection &connection)
    : m_connection(connection)
    , m_pingAtom(connection.atom("_NET_WM_PING"))
{
}

void InputWatch::start(XWindow focus)
{
    m_expected.clear();
    m_userActed = m_focusLost = m_mapChanged = m_fencePassed = false;
    m_pings.clear();
    m_focus = focus;
    m_active = true;
    Display *display = m_connection.display();
    selectRawEvents(m_connection, true);
    XkbSelectEvents(display, XkbUseCoreKbd, XkbMapNotifyMask | XkbNewKeyboardNotifyMask,
                    XkbMapNotifyMask | XkbNewKeyboardNotifyMask);
    // Clients answer pings to the root window: most to those who watch its children, Qt's to those
    // who watch the window itself.
    XSelectInput(display, m_connection.root(), SubstructureNotifyMask | StructureNotifyMask);
    if (focus > PointerRoot)
        XSelectInput(display, focus, FocusChangeMask);
}

void InputWatch::stop()
{
    if (!m_active)
        return;
    m_active = false;
    Display *display = m_connection.display();
    selectRawEvents(m_connection, false);
    XkbSelectEvents(display, XkbUseCoreKbd, XkbMapNotifyMask | XkbNewKeyboardNotifyMask, 0);
    XSelectInput(display, m_connection.root(), NoEventMask);
    if (m_focus > PointerRoot)
        XSelectInput(display, m_focus, NoEventMask);
    m_connection.flush();
}

void InputWatch::poll()
{
    Display *display = m_connection.display();
    while (!m_connection.broken() && XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == GenericEvent && event.xcookie.extension == m_connection.inputOpcode()) {
            if (XGetEventData(display, &event.xcookie)) {
                const auto *raw = static_cast<const XIRawEvent *>(event.xcookie.data);
                handleRaw(event.xcookie.evtype, raw->sourceid, raw->detail);
                XFreeEventData(display, &event.xcookie);
            }
        } else if (event.type == PropertyNotify &&
                   event.xproperty.window == m_connection.ownWindow()) {
            m_fencePassed = true;
        } else if (event.type == ClientMessage && event.xclient.format == 32 &&
                   static_cast<unsigned long>(event.xclient.data.l[0]) == m_pingAtom) {
            handlePong(static_cast<XWindow>(event.xclient.data.l[2]),
                       static_cast<std::uint32_t>(event.xclient.data.l[1]));
        } else if (event.type == FocusOut && event.xfocus.window == m_focus) {
            // A keyboard grab by another client takes the keys away just as a focus change does.
            if (event.xfocus.detail != NotifyInferior && event.xfocus.detail != NotifyPointer)
                m_focusLost = true;
        } else if (event.type == m_connection.xkbEventBase()) {
            const auto *xkb = reinterpret_cast<const XkbAnyEvent *>(&event);
            if (xkb->xkb_type == XkbMapNotify || xkb->xkb_type == XkbNewKeyboardNotify)
                m_mapChanged = true;
        }
    }
}

void InputWatch::handleRaw(int type, int sourceDevice, int detail)
{
    if (type == XI_RawKeyPress) {
        const bool ours = sourceDevice == m_connection.testKeyboard() && !m_expected.empty() &&
                          m_expected.front() == detail;
        if (ours)
            m_expected.pop_front();
        else
            m_userActed = true;
    } else if (type == XI_RawButtonPress) {
        // Buttons 4 to 7 scroll, which moves neither focus nor caret.
        if (detail < 4 || detail > 7)
            m_userActed = true;
    }
}

// A window manager numbers its pings by the server's time.
void InputWatch::handlePong(XWindow window, std::uint32_t number)
{
    const auto found = m_pings.find(window);
    if (found != m_pings.end() && number > found->second.answered && number <= found->second.sent)
        found->second.answered = number;
}

std::uint32_t InputWatch::lastPong(XWindow window) const
{
    const auto found = m_pings.find(window);
    return found == m_pings.end() ? 0 : found->second.answered;
}

} // namespace platform::linux_
