// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/x11/WindowServer.h"

#include <QHash>
#include <QSet>

namespace fake
{

/// An X server with a window manager that the test plays. Records what it is asked to do, and sends
/// the events of what the test changes to those who have selected them.
class WindowServer : public platform::linux_::WindowServer
{
public:
    static constexpr xcb_window_t rootWindow = 100;
    static constexpr xcb_window_t managerWindow = 101;

    QHash<xcb_window_t, std::int32_t> processes;
    QHash<xcb_window_t, xcb_window_t> parents;
    QHash<xcb_window_t, QRect> places;
    QSet<xcb_window_t> viewable;
    /// From the bottom to the top.
    QList<xcb_window_t> stack;
    xcb_window_t focus = rootWindow;
    bool hasManager = true;
    /// Whom the window manager was asked to activate.
    QList<xcb_window_t> activated;
    QList<xcb_window_t> focused;
    int questions = 0;

    WindowServer() { addWindow(managerWindow, 1); }

    void addWindow(xcb_window_t window, std::int32_t pid, const QRect &place = {0, 0, 100, 100})
    {
        processes.insert(window, pid);
        parents.insert(window, rootWindow);
        places.insert(window, place);
        viewable.insert(window);
        stack.append(window);
    }
    void setActive(xcb_window_t window)
    {
        m_active = window;
        xcb_property_notify_event_t event{};
        event.response_type = XCB_PROPERTY_NOTIFY;
        event.window = rootWindow;
        event.atom = atom("_NET_ACTIVE_WINDOW");
        deliver(&event);
    }
    void unmap(xcb_window_t window)
    {
        viewable.remove(window);
        xcb_unmap_notify_event_t event{};
        event.response_type = XCB_UNMAP_NOTIFY;
        event.event = event.window = window;
        if (m_selected.contains(window))
            deliver(&event);
    }
    void destroy(xcb_window_t window)
    {
        places.remove(window);
        viewable.remove(window);
        xcb_destroy_notify_event_t event{};
        event.response_type = XCB_DESTROY_NOTIFY;
        event.event = event.window = window;
        if (m_selected.remove(window))
            deliver(&event);
    }
    void endManager()
    {
        hasManager = false;
        destroy(managerWindow);
    }
    /// The window manager, or the user, moves and resizes a window beside the root window.
    void move(xcb_window_t window, const QRect &place)
    {
        places.insert(window, place);
        xcb_configure_notify_event_t event{};
        event.response_type = XCB_CONFIGURE_NOTIFY;
        event.event = rootWindow;
        event.window = window;
        event.x = std::int16_t(place.x());
        event.y = std::int16_t(place.y());
        event.width = std::uint16_t(place.width());
        event.height = std::uint16_t(place.height());
        deliver(&event);
    }
    /// Another client, or the user, moves the focus.
    void moveFocus(xcb_window_t window, xcb_timestamp_t time = XCB_CURRENT_TIME)
    {
        if (time != XCB_CURRENT_TIME)
            m_focusTime = time;
        const xcb_window_t former = std::exchange(focus, window);
        xcb_focus_out_event_t event{};
        event.response_type = XCB_FOCUS_OUT;
        event.event = former;
        event.mode = XCB_NOTIFY_MODE_NORMAL;
        if (m_selected.contains(former))
            deliver(&event);
        event.response_type = XCB_FOCUS_IN;
        event.event = window;
        if (m_selected.contains(window))
            deliver(&event);
    }

    xcb_window_t root() const override { return rootWindow; }
    xcb_atom_t atom(const QByteArray &name) override
    {
        if (!m_atoms.contains(name))
            m_atoms.append(name);
        return xcb_atom_t(500 + m_atoms.indexOf(name));
    }
    QList<quint32> items(xcb_window_t window, const QByteArray &property) override
    {
        ++questions;
        if (window == rootWindow && property == "_NET_ACTIVE_WINDOW")
            return {m_active};
        if (window == rootWindow && property == "_NET_SUPPORTING_WM_CHECK")
            return {managerWindow};
        return {};
    }
    bool windowManagerSupports(const QByteArray &) override
    {
        ++questions;
        return hasManager;
    }
    std::optional<std::int32_t> processOf(xcb_window_t window) override
    {
        ++questions;
        return processes.contains(window) ? std::optional(processes.value(window)) : std::nullopt;
    }
    bool isViewable(xcb_window_t window) override
    {
        ++questions;
        return viewable.contains(window);
    }
    std::optional<QRect> placeOf(xcb_window_t window) override
    {
        ++questions;
        return places.contains(window) ? std::optional(places.value(window)) : std::nullopt;
    }
    xcb_window_t parentOf(xcb_window_t window) override
    {
        return parents.value(window, xcb_window_t(XCB_NONE));
    }
    xcb_window_t inputFocus() override
    {
        ++questions;
        return focus;
    }
    QList<xcb_window_t> childrenOf(xcb_window_t window) override
    {
        QList<xcb_window_t> children;
        for (const xcb_window_t each : std::as_const(stack)) {
            if (parents.value(each) == window)
                children.append(each);
        }
        return children;
    }
    bool isApplicationTopLevel(xcb_window_t window) override { return viewable.contains(window); }
    void setInputFocus(xcb_window_t window, xcb_timestamp_t time) override
    {
        focused.append(window);
        if (time != XCB_CURRENT_TIME && time < m_focusTime)
            return;
        if (viewable.contains(window) || !parents.contains(window))
            moveFocus(window);
    }
    xcb_timestamp_t serverTime() override { return 1; }
    bool select(xcb_window_t window, quint32) override
    {
        if (window != rootWindow && parents.contains(window) && !places.contains(window))
            return false;
        m_selected.insert(window);
        return true;
    }
    void deselect(xcb_window_t window, quint32) override { m_selected.remove(window); }
    void catchUp() override {}
    void sendToWindowManager(xcb_window_t window, const QByteArray &,
                             std::initializer_list<quint32>) override
    {
        activated.append(window);
    }

private:
    template <typename Event> void deliver(const Event *event)
    {
        const auto *generic = reinterpret_cast<const xcb_generic_event_t *>(event);
        Q_EMIT eventNoticed(generic);
        Q_EMIT eventReceived(generic);
    }

    xcb_window_t m_active = XCB_NONE;
    xcb_timestamp_t m_focusTime = 0;
    QList<QByteArray> m_atoms;
    QSet<xcb_window_t> m_selected;
};

} // namespace fake
