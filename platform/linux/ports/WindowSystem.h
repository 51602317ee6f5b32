// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Workspace.h"
#include "platform/linux/ports/ActiveWindow.h"
#include "platform/linux/ports/WindowWatch.h"

namespace platform::linux_
{

/// What one window system gives the others. Main thread only, after the application object is made.
class WindowSystem
{
public:
    virtual ~WindowSystem() = default;

    virtual Workspace &workspace() = 0;
    virtual ActiveWindow &activeWindow() = 0;
    /// Null where the window system notices nothing of other programs' windows.
    virtual WindowWatch *windowWatch() { return nullptr; }
};

} // namespace platform::linux_
