// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/wayland/WaylandGlobals.h"

#include <QPoint>
#include <QSize>

#include <functional>
#include <memory>

class QWindow;
struct wl_surface;
struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;

namespace platform::linux_
{

/// The compositor's layers above and below the windows (the protocol wlr-layer-shell).
class LayerShell
{
public:
    /// Null where the toolkit does not run on Wayland or the compositor has no layers.
    static std::unique_ptr<LayerShell> bind();
    ~LayerShell();
    LayerShell(const LayerShell &) = delete;
    LayerShell &operator=(const LayerShell &) = delete;

    static constexpr const char *interfaceName = "zwlr_layer_shell_v1";

private:
    friend class LayerSurface;
    explicit LayerShell(std::unique_ptr<WaylandGlobals> globals);

    std::unique_ptr<WaylandGlobals> m_globals;
    zwlr_layer_shell_v1 *m_shell = nullptr;
};

/// Makes the surface of a window a part of the topmost layer, at a place on the screen, above
/// full-screen windows too. The toolkit paints it and gets its input as it does with any other, but
/// must not have given the surface a role of its own. Lives no longer than the window's surface.
class LayerSurface
{
public:
    /// Before the window is first painted. `place`: on the desktop, in points. `closed` is called
    /// when the compositor has taken the surface away, with its screen for instance.
    LayerSurface(LayerShell &shell, QWindow *window, QPoint place, QSize size,
                 std::function<void()> closed);
    ~LayerSurface();
    LayerSurface(const LayerSurface &) = delete;
    LayerSurface &operator=(const LayerSurface &) = delete;

    QPoint place() const { return m_place; }
    void moveTo(QPoint place);

    /// Whether the surface takes the keyboard. Asked for while it is shown, it gets it at once;
    /// when it gives it up, the window that had it before gets it back.
    void setTakesKeyboard(bool takes);

private:
    void commit();

    const QPoint m_screenOrigin;
    QPoint m_place;
    std::function<void()> m_closed;
    wl_surface *m_surface = nullptr;
    zwlr_layer_surface_v1 *m_layerSurface = nullptr;
};

} // namespace platform::linux_
