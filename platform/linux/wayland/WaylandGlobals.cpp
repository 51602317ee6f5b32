// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/WaylandGlobals.h"

#include <QGuiApplication>

#include <algorithm>
#include <qpa/qplatformnativeinterface.h>
#include <wayland-client.h>

namespace platform::linux_
{

std::unique_ptr<WaylandGlobals> WaylandGlobals::ofToolkit()
{
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return nullptr;
    auto *display = static_cast<wl_display *>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display"));
    return display ? std::unique_ptr<WaylandGlobals>(new WaylandGlobals(display, false)) : nullptr;
}

std::unique_ptr<WaylandGlobals> WaylandGlobals::ofEnvironment()
{
    wl_display *const display = wl_display_connect(nullptr);
    return display ? std::unique_ptr<WaylandGlobals>(new WaylandGlobals(display, true)) : nullptr;
}

WaylandGlobals::WaylandGlobals(wl_display *display, bool owned)
    : m_display(display)
    , m_owned(owned)
    , m_queue(wl_display_create_queue(display))
{
    // A request on the wrapper gives its new object our queue from the first event on.
    auto *const wrapper = static_cast<wl_display *>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapper), m_queue);
    m_registry = wl_display_get_registry(wrapper);
    wl_proxy_wrapper_destroy(wrapper);
    static constexpr wl_registry_listener listener{
        .global =
            [](void *self, wl_registry *, std::uint32_t name, const char *interface,
               std::uint32_t version) {
                static_cast<WaylandGlobals *>(self)->m_globals.insert(interface, {name, version});
            },
        .global_remove =
            [](void *self, wl_registry *, std::uint32_t name) {
                static_cast<WaylandGlobals *>(self)->m_globals.removeIf(
                    [name](auto it) { return it->name == name; });
            },
    };
    wl_registry_add_listener(m_registry, &listener, this);
    roundTrip();
}

WaylandGlobals::~WaylandGlobals()
{
    wl_registry_destroy(m_registry);
    wl_event_queue_destroy(m_queue);
    if (m_owned)
        wl_display_disconnect(m_display);
}

std::uint32_t WaylandGlobals::versionOf(const QByteArray &interface) const
{
    return m_globals.value(interface).version;
}

void *WaylandGlobals::bindObject(const wl_interface &interface, std::uint32_t maxVersion)
{
    const Global global = m_globals.value(interface.name);
    if (global.version == 0)
        return nullptr;
    return wl_registry_bind(m_registry, global.name, &interface,
                            std::min(global.version, maxVersion));
}

bool WaylandGlobals::roundTrip()
{
    return wl_display_roundtrip_queue(m_display, m_queue) >= 0;
}

} // namespace platform::linux_
