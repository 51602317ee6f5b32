// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QRect>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <xcb/xcb.h>

namespace platform::linux_
{

/// The port to the X server: what the decisions about windows and the keyboard ask of it. The real
/// one is XcbConnection; tests have one that records. Main thread only. Each question waits for the
/// X server, never for another client. A window is named by its id on the server; it may be gone.
class WindowServer : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual xcb_window_t root() const = 0;
    virtual xcb_atom_t atom(const QByteArray &name) = 0;

    /// The property's items where it has the format 32; empty when it is not there.
    virtual QList<quint32> items(xcb_window_t window, const QByteArray &property) = 0;
    /// The first of them.
    std::optional<quint32> item(xcb_window_t window, const QByteArray &property)
    {
        const QList<quint32> list = items(window, property);
        return list.isEmpty() ? std::nullopt : std::optional(list.first());
    }

    /// True when a window manager that follows EWMH runs and lists `hint` in _NET_SUPPORTED.
    virtual bool windowManagerSupports(const QByteArray &hint) = 0;

    /// The process that created the window, as the X server knows it from the kernel; where the
    /// server cannot tell, as the window says in _NET_WM_PID.
    virtual std::optional<std::int32_t> processOf(xcb_window_t window) = 0;
    /// Whether the window and all around it are mapped.
    virtual bool isViewable(xcb_window_t window) = 0;
    /// Where the window lies on the root window, without its frame, in pixels.
    virtual std::optional<QRect> placeOf(xcb_window_t window) = 0;
    virtual xcb_window_t parentOf(xcb_window_t window) = 0;
    /// From the bottom to the top.
    virtual QList<xcb_window_t> childrenOf(xcb_window_t window) = 0;
    /// Whether this child of the root window is an application's, or the window manager's frame
    /// around one, and is shown; in contrast to a menu, a tool tip or a screen locker.
    virtual bool isApplicationTopLevel(xcb_window_t window) = 0;

    /// The window that has the keyboard (GetInputFocus); XCB_NONE or XCB_INPUT_FOCUS_POINTER_ROOT
    /// where no window has.
    virtual xcb_window_t inputFocus() = 0;
    /// A window that is not viewable does not get it, and neither does one when the focus has
    /// changed after `time`, in the X server's milliseconds (SetInputFocus).
    virtual void setInputFocus(xcb_window_t window, xcb_timestamp_t time = XCB_CURRENT_TIME) = 0;

    /// The X server's time now, in its milliseconds.
    virtual xcb_timestamp_t serverTime() = 0;

    /// Adds to the events of `window` that are reported. False when there is no such window.
    virtual bool select(xcb_window_t window, quint32 eventMask) = 0;
    /// Takes one such addition back.
    virtual void deselect(xcb_window_t window, quint32 eventMask) = 0;

    /// Notices what the server has sent by now, without waiting.
    virtual void catchUp() = 0;

    /// Sends a client message of format 32 to the root window, as EWMH has it for requests to the
    /// window manager.
    virtual void sendToWindowManager(xcb_window_t window, const QByteArray &type,
                                     std::initializer_list<quint32> data) = 0;

Q_SIGNALS:
    /// As soon as the event is read, perhaps from within a question: only note it.
    void eventNoticed(const xcb_generic_event_t *event);
    /// From the event loop.
    void eventReceived(const xcb_generic_event_t *event);
};

} // namespace platform::linux_
