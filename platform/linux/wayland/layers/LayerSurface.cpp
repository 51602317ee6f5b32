// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/layers/LayerSurface.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <qpa/qplatformnativeinterface.h>
#include <wayland-client.h>

// An argument in the protocol has the name of a keyword.
#define namespace namespace_
#include "wlr-layer-shell-unstable-v1-client-protocol.h"
#undef namespace

namespace platform::linux_
{

namespace
{

constexpr std::uint32_t maxVersion = 4;
/// What the surface is for, by which some compositors choose how it behaves: to those, "dock" means
/// that a click on it does not take the keyboard from the active window.
constexpr const char *purpose = "dock";

QScreen *screenAt(QPoint place)
{
    QScreen *const screen = QGuiApplication::screenAt(place);
    return screen ? screen : QGuiApplication::primaryScreen();
}

} // namespace

std::unique_ptr<LayerShell> LayerShell::bind()
{
    auto globals = WaylandGlobals::ofToolkit();
    if (!globals || globals->versionOf(interfaceName) == 0)
        return nullptr;
    return std::unique_ptr<LayerShell>(new LayerShell(std::move(globals)));
}

LayerShell::LayerShell(std::unique_ptr<WaylandGlobals> globals)
    : m_globals(std::move(globals))
    , m_shell(m_globals->bind<zwlr_layer_shell_v1>(zwlr_layer_shell_v1_interface, maxVersion))
{
}

LayerShell::~LayerShell()
{
    if (zwlr_layer_shell_v1_get_version(m_shell) >= ZWLR_LAYER_SHELL_V1_DESTROY_SINCE_VERSION)
        zwlr_layer_shell_v1_destroy(m_shell);
    else
        wl_proxy_destroy(reinterpret_cast<wl_proxy *>(m_shell));
}

LayerSurface::LayerSurface(LayerShell &shell, QWindow *window, QPoint place, QSize size,
                           std::function<void()> closed)
    : m_screenOrigin(screenAt(place)->geometry().topLeft())
    , m_place(place)
    , m_closed(std::move(closed))
{
    QPlatformNativeInterface *const native = QGuiApplication::platformNativeInterface();
    m_surface = static_cast<wl_surface *>(native->nativeResourceForWindow("surface", window));
    auto *const output =
        static_cast<wl_output *>(native->nativeResourceForScreen("output", screenAt(place)));
    if (!m_surface)
        return;
    m_layerSurface = zwlr_layer_shell_v1_get_layer_surface(
        shell.m_shell, m_surface, output, ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, purpose);
    static constexpr zwlr_layer_surface_v1_listener listener{
        .configure = [](void *, zwlr_layer_surface_v1 *surface, std::uint32_t serial, std::uint32_t,
                        std::uint32_t) { zwlr_layer_surface_v1_ack_configure(surface, serial); },
        .closed = [](void *self,
                     zwlr_layer_surface_v1 *) { static_cast<LayerSurface *>(self)->m_closed(); },
    };
    zwlr_layer_surface_v1_add_listener(m_layerSurface, &listener, this);
    zwlr_layer_surface_v1_set_size(m_layerSurface, std::uint32_t(size.width()),
                                   std::uint32_t(size.height()));
    zwlr_layer_surface_v1_set_anchor(m_layerSurface, ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP |
                                                         ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
    // Panels and docks of the desktop do not push it aside.
    zwlr_layer_surface_v1_set_exclusive_zone(m_layerSurface, -1);
    zwlr_layer_surface_v1_set_keyboard_interactivity(m_layerSurface, 0);
    moveTo(place);
    // The protocol wants the first configuration to be acknowledged before anything is painted.
    shell.m_globals->roundTrip();
    // Later events come with the toolkit's, on the main thread.
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(m_layerSurface), nullptr);
}

LayerSurface::~LayerSurface()
{
    if (m_layerSurface)
        zwlr_layer_surface_v1_destroy(m_layerSurface);
}

void LayerSurface::commit()
{
    wl_surface_commit(m_surface);
    wl_display_flush(static_cast<wl_display *>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display")));
}

void LayerSurface::moveTo(QPoint place)
{
    m_place = place;
    if (!m_layerSurface)
        return;
    const QPoint margin = place - m_screenOrigin;
    zwlr_layer_surface_v1_set_margin(m_layerSurface, margin.y(), 0, 0, margin.x());
    commit();
}

void LayerSurface::setTakesKeyboard(bool takes)
{
    if (!m_layerSurface)
        return;
    std::uint32_t interactivity = ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE;
    if (takes && zwlr_layer_surface_v1_get_version(m_layerSurface) >=
                     ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_ON_DEMAND_SINCE_VERSION)
        interactivity = ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_ON_DEMAND;
    else if (takes)
        interactivity = ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE;
    zwlr_layer_surface_v1_set_keyboard_interactivity(m_layerSurface, interactivity);
    commit();
}

} // namespace platform::linux_
