// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <optional>

namespace platform::linux_
{

/// A reply or event that xcb allocated.
template <typename T> struct XcbFree {
    void operator()(T *p) const { std::free(p); }
};
template <typename T> using XcbPtr = std::unique_ptr<T, XcbFree<T>>;

/// A connection to the X server beside the toolkit's own. Events that we select on windows of
/// others, and on the root window, do not disturb what the toolkit selects there.
///
/// Main thread only. Requests that return a value wait for the X server, never for another client.
class XcbConnection : public QObject
{
    Q_OBJECT
public:
    /// Connects to the display that the toolkit uses; null where that is not X11.
    static std::unique_ptr<XcbConnection> open();
    ~XcbConnection() override;

    xcb_connection_t *get() const { return m_connection; }
    /// The toolkit's connection, for requests that must keep their order with the toolkit's.
    xcb_connection_t *toolkit() const;
    xcb_window_t root() const { return m_root; }
    int screenNumber() const { return m_screenNumber; }

    xcb_atom_t atom(const QByteArray &name);

    /// The property's items where it has the format 32; empty when it is not there.
    QList<quint32> items(xcb_window_t window, const QByteArray &property);
    std::optional<quint32> item(xcb_window_t window, const QByteArray &property);
    /// The property's bytes where it has the format 8; empty when it is not there.
    QByteArray bytes(xcb_window_t window, const QByteArray &property);

    /// True when a window manager that follows EWMH runs and lists `hint` in _NET_SUPPORTED.
    bool windowManagerSupports(const QByteArray &hint);

    /// The window that has the keyboard (GetInputFocus); XCB_NONE or XCB_INPUT_FOCUS_POINTER_ROOT
    /// where no window has.
    xcb_window_t inputFocus();

    /// The X server's time now, in its milliseconds.
    xcb_timestamp_t serverTime();

    /// Adds to the events of `window` that eventReceived() reports. False when there is no such
    /// window.
    bool select(xcb_window_t window, quint32 eventMask);
    void deselect(xcb_window_t window);

    /// Sends a client message of format 32 to the root window, as EWMH has it for requests to the
    /// window manager.
    void sendToWindowManager(xcb_window_t window, const QByteArray &type,
                             std::initializer_list<quint32> data);

Q_SIGNALS:
    void eventReceived(const xcb_generic_event_t *event);

private:
    XcbConnection(xcb_connection_t *connection, int screenNumber);
    void dispatch();

    xcb_connection_t *m_connection;
    int m_screenNumber;
    xcb_window_t m_root = XCB_NONE;
    /// Never mapped; its property changes tell the server's time.
    xcb_window_t m_clock = XCB_NONE;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    QHash<xcb_window_t, quint32> m_masks;
    QList<xcb_generic_event_t *> m_postponed;
};

} // namespace platform::linux_
