// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/ActiveWindow.h"

#include <QString>

namespace platform::linux_
{

/// What a compositor reports of the windows in its session. Programs cannot see each other's
/// windows on Wayland, so each compositor has a way of its own, which stands behind this. It is
/// notified of changes and never polls. Main thread only; no call waits for another
/// program than the compositor, and for that one no longer than a quarter of a second.
class WindowSource : public ActiveWindow
{
public:
    bool isPlaceNeeded() override { return true; }

    /// The active window's application id, the name of its desktop entry by convention; empty when
    /// it has none.
    virtual QString activeApplicationId() = 0;

    /// Gives the keyboard to a window of our own process.
    virtual void activateOwnWindow(const QString &title) = 0;
};

} // namespace platform::linux_
