// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QHash>

#include <cstdint>
#include <memory>

struct wl_display;
struct wl_event_queue;
struct wl_interface;
struct wl_registry;

namespace platform::linux_
{

/// The objects that a compositor offers to all of its clients. Their events come on a queue of our
/// own: while we wait for an answer, nothing of the toolkit's is dispatched. Main thread only;
/// waits for the compositor alone.
class WaylandGlobals
{
public:
    /// On the toolkit's connection; null where that does not run on Wayland.
    static std::unique_ptr<WaylandGlobals> ofToolkit();
    /// On a connection of its own to the display of the environment; null where there is none.
    static std::unique_ptr<WaylandGlobals> ofEnvironment();

    ~WaylandGlobals();
    WaylandGlobals(const WaylandGlobals &) = delete;
    WaylandGlobals &operator=(const WaylandGlobals &) = delete;

    /// The version in which the compositor has this interface; 0 when it has not.
    std::uint32_t versionOf(const QByteArray &interface) const;

    /// The compositor's object of this interface, in `maxVersion` or less; null when it has none.
    /// The caller owns it.
    template <typename Object> Object *bind(const wl_interface &interface, std::uint32_t maxVersion)
    {
        return static_cast<Object *>(bindObject(interface, maxVersion));
    }

    /// Waits until the compositor has answered everything asked so far. False when the connection
    /// is broken.
    bool roundTrip();

    wl_display *display() const { return m_display; }

private:
    struct Global {
        std::uint32_t name = 0;
        std::uint32_t version = 0;
    };

    WaylandGlobals(wl_display *display, bool owned);
    void *bindObject(const wl_interface &interface, std::uint32_t maxVersion);

    wl_display *const m_display;
    const bool m_owned;
    wl_event_queue *m_queue = nullptr;
    wl_registry *m_registry = nullptr;
    QHash<QByteArray, Global> m_globals;
};

} // namespace platform::linux_
