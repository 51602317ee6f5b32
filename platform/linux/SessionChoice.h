// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

namespace platform::linux_
{

/// What the session that we are started in has.
struct SessionFacts {
    bool hasWayland = false;
    /// The compositor shows surfaces in layers above the windows.
    bool hasLayers = false;
    /// The compositor reports other programs' windows in a way that we know.
    bool hasWindowSource = false;
    bool hasX11 = false;

    /// Asks the environment and the compositor.
    static SessionFacts current();
};

/// Which window system to work on, and what is missing there.
struct SessionChoice {
    bool usesWayland = false;
    /// For the user; empty where nothing is missing.
    QString limitation;

    /// Wayland where it offers all that we need; else the X11 server of the session, where native
    /// Wayland windows have no button.
    static SessionChoice of(const SessionFacts &facts);
};

} // namespace platform::linux_
