// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/WindowSystems.h"

#include "platform/linux/SessionChoice.h"
#include "platform/linux/wayland/WaylandWindowSystem.h"
#include "platform/linux/wayland/sway/SwayWindows.h"
#include "platform/linux/wayland/typing/StreamTypist.h"
#include "platform/linux/wayland/typing/VirtualKeyboard.h"
#include "platform/linux/x11/X11WindowSystem.h"
#include "platform/linux/x11/XTestKeyboard.h"

#include <QGuiApplication>

namespace platform::linux_
{

namespace
{

bool runsOnWayland()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

} // namespace

void chooseWindowSystem()
{
    // BypassWindowManagerHint then keeps a window from getting a role of the toolkit's, so that a
    // panel can be a layer's, and a window keeps the position by which a panel is placed.
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
    qputenv("QT_WAYLAND_DISABLE_FIXED_POSITIONS", "1");
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return;
    const SessionFacts facts = SessionFacts::current();
    if (facts.hasWayland || facts.hasX11)
        qputenv("QT_QPA_PLATFORM", SessionChoice::of(facts).usesWayland ? "wayland" : "xcb");
}

std::unique_ptr<WindowSystem> createWindowSystem()
{
    const QString limitation = SessionChoice::of(SessionFacts::current()).limitation;
    if (runsOnWayland())
        return std::make_unique<WaylandWindowSystem>(SwayWindows::open(), limitation);
    return std::make_unique<X11WindowSystem>(limitation);
}

std::unique_ptr<Typist> createTypist(InputMethods &inputMethods)
{
    if (runsOnWayland())
        return std::make_unique<StreamTypist>(std::make_unique<VirtualKeyboard>());
    return std::make_unique<XTestKeyboard>(&inputMethods);
}

} // namespace platform::linux_
