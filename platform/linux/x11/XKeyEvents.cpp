// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/XKeyServer.h"

#include <array>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>

// The events of the server while a text is typed: the user's acts, answers to pings, changes of
// focus and map.

namespace platform::linux_
{

void XKeyServer::selectRawEvents(bool wanted)
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
    XISelectEvents(m_display, root(), &mask, 1);
}

void XKeyServer::watch(WindowId focus)
{
    m_focus = focus;
    selectRawEvents(true);
    XkbSelectEvents(m_display, XkbUseCoreKbd, XkbMapNotifyMask | XkbNewKeyboardNotifyMask,
                    XkbMapNotifyMask | XkbNewKeyboardNotifyMask);
    // Clients answer pings to the root window: most to those who watch its children, Qt's to those
    // who watch the window itself.
    XSelectInput(m_display, root(), SubstructureNotifyMask | StructureNotifyMask);
    if (focus > PointerRoot)
        XSelectInput(m_display, focus, FocusChangeMask);
}

void XKeyServer::unwatch()
{
    selectRawEvents(false);
    XkbSelectEvents(m_display, XkbUseCoreKbd, XkbMapNotifyMask | XkbNewKeyboardNotifyMask, 0);
    XSelectInput(m_display, root(), NoEventMask);
    if (m_focus > PointerRoot)
        XSelectInput(m_display, m_focus, NoEventMask);
    XFlush(m_display);
}

void XKeyServer::takeEvents()
{
    while (!m_broken && XPending(m_display) > 0) {
        XEvent event;
        XNextEvent(m_display, &event);
        if (const std::optional<Event> found = eventFrom(event))
            m_events.push_back(*found);
    }
}

std::optional<KeyServer::Event> XKeyServer::nextEvent()
{
    if (m_events.empty())
        takeEvents();
    if (m_events.empty())
        return std::nullopt;
    const Event event = m_events.front();
    m_events.pop_front();
    return event;
}

std::optional<KeyServer::Event> XKeyServer::eventFrom(_XEvent &event)
{
    std::optional<Event> found;
    if (event.type == GenericEvent && event.xcookie.extension == m_inputOpcode) {
        if (!XGetEventData(m_display, &event.xcookie))
            return found;
        const auto *raw = static_cast<const XIRawEvent *>(event.xcookie.data);
        if (event.xcookie.evtype == XI_RawKeyPress)
            found =
                KeyPressed{static_cast<std::uint8_t>(raw->detail), raw->sourceid == m_testKeyboard};
        else if (event.xcookie.evtype == XI_RawButtonPress)
            found = ButtonPressed{raw->detail};
        XFreeEventData(m_display, &event.xcookie);
    } else if (event.type == PropertyNotify && event.xproperty.window == m_ownWindow) {
        found = Fence{};
    } else if (event.type == ClientMessage && event.xclient.format == 32 &&
               static_cast<unsigned long>(event.xclient.data.l[0]) == m_pingAtom) {
        found = Pong{static_cast<WindowId>(event.xclient.data.l[2]),
                     static_cast<std::uint32_t>(event.xclient.data.l[1])};
    } else if (event.type == FocusOut && event.xfocus.window == m_focus) {
        // A keyboard grab by another client takes the keys away just as a focus change does.
        if (event.xfocus.detail != NotifyInferior && event.xfocus.detail != NotifyPointer)
            found = FocusLeft{};
    } else if (event.type == m_xkbEventBase) {
        const auto *xkb = reinterpret_cast<const XkbAnyEvent *>(&event);
        if (xkb->xkb_type == XkbMapNotify || xkb->xkb_type == XkbNewKeyboardNotify)
            found = MapChanged{};
    }
    return found;
}

} // namespace platform::linux_
