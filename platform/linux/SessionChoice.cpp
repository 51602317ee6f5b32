// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/SessionChoice.h"

#include "platform/linux/wayland/WaylandGlobals.h"
#include "platform/linux/wayland/layers/LayerSurface.h"
#include "platform/linux/wayland/sway/SwayIpc.h"

#include <QCoreApplication>

namespace platform::linux_
{

SessionFacts SessionFacts::current()
{
    SessionFacts facts;
    facts.hasX11 = qEnvironmentVariableIsSet("DISPLAY");
    const auto globals = WaylandGlobals::ofEnvironment();
    if (!globals)
        return facts;
    facts.hasWayland = true;
    facts.hasLayers = globals->versionOf(LayerShell::interfaceName) > 0;
    facts.hasWindowSource = SwayIpc().open(qgetenv("SWAYSOCK"));
    return facts;
}

SessionChoice SessionChoice::of(const SessionFacts &facts)
{
    if (facts.hasWayland && facts.hasLayers && facts.hasWindowSource)
        return {true, {}};
    if (!facts.hasWayland)
        return {};
    return {!facts.hasX11,
            facts.hasX11
                ? QCoreApplication::translate(
                      "Session", "In this Wayland session Quillet only works in programs that run "
                                 "on X11: choose an X11 session when you log in, and it works in "
                                 "all of them.")
                : QCoreApplication::translate(
                      "Session", "This Wayland session does not tell Quillet where the windows of "
                                 "other programs are: choose an X11 session when you log in, and "
                                 "it works in all of them.")};
}

} // namespace platform::linux_
