// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/x11/WindowServer.h"

#include <QHash>

#include <cstdlib>
#include <memory>

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
class XcbConnection : public WindowServer
{
    Q_OBJECT
public:
    /// Whether the display that DISPLAY names takes a connection; also before the toolkit runs.
    static bool canConnect();

    /// Connects to the display that the toolkit uses; null where that is not X11.
    static std::unique_ptr<XcbConnection> open();
    ~XcbConnection() override;

    xcb_connection_t *get() const { return m_connection; }
    /// The toolkit's connection, for requests that must keep their order with the toolkit's.
    xcb_connection_t *toolkit() const;
    int screenNumber() const { return m_screenNumber; }

    /// The property's bytes where it has the format 8; empty when it is not there.
    QByteArray bytes(xcb_window_t window, const QByteArray &property);

    xcb_window_t root() const override { return m_root; }
    xcb_atom_t atom(const QByteArray &name) override;
    QList<quint32> items(xcb_window_t window, const QByteArray &property) override;
    bool windowManagerSupports(const QByteArray &hint) override;
    std::optional<std::int32_t> processOf(xcb_window_t window) override;
    bool isViewable(xcb_window_t window) override;
    std::optional<QRect> placeOf(xcb_window_t window) override;
    xcb_window_t parentOf(xcb_window_t window) override;
    QList<xcb_window_t> childrenOf(xcb_window_t window) override;
    bool isApplicationTopLevel(xcb_window_t window) override;
    xcb_window_t inputFocus() override;
    void setInputFocus(xcb_window_t window, xcb_timestamp_t time) override;
    xcb_timestamp_t serverTime() override;
    bool select(xcb_window_t window, quint32 eventMask) override;
    void deselect(xcb_window_t window, quint32 eventMask) override;
    void catchUp() override;
    void sendToWindowManager(xcb_window_t window, const QByteArray &type,
                             std::initializer_list<quint32> data) override;

private:
    XcbConnection(xcb_connection_t *connection, int screenNumber);
    void dispatch();
    void askForResources();
    bool holdsApplication(xcb_window_t window, int depth);
    quint32 selected(xcb_window_t window) const;

    xcb_connection_t *m_connection;
    int m_screenNumber;
    xcb_window_t m_root = XCB_NONE;
    /// Never mapped; its property changes tell the server's time.
    xcb_window_t m_clock = XCB_NONE;
    /// The X-Resource extension, version 1.2 or later.
    bool m_hasResources = false;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    /// What each part has selected on a window.
    QMultiHash<xcb_window_t, quint32> m_masks;
    QList<xcb_generic_event_t *> m_postponed;
};

} // namespace platform::linux_
