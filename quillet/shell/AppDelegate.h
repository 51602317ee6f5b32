// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Platform.h"
#include "quillet/shell/UpdaterController.h"

#include <memory>

/// What the application does as a whole, apart from its window and its menu. Main thread only.
class AppDelegate
{
public:
    explicit AppDelegate(platform::Platform &platform)
        : m_platform(platform)
    {
    }

    /// Starts the updater and brings `window` to the user as that of a regular application.
    void applicationDidFinishLaunching(QWidget *window);

    /// Absent until the launch has finished.
    std::unique_ptr<UpdaterController> updaterController;

private:
    platform::Platform &m_platform;
};
