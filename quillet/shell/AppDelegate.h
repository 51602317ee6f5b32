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
    /// Both must outlive this object.
    AppDelegate(platform::Platform &platform, Notice &notice)
        : m_platform(platform)
        , m_notice(notice)
    {
    }

    /// Starts the updater and brings `window` to the user as that of a regular application. Without
    /// a window the application stays in the background.
    void applicationDidFinishLaunching(QWidget *window);

    /// Absent until the launch has finished.
    std::unique_ptr<UpdaterController> updaterController;

private:
    platform::Platform &m_platform;
    Notice &m_notice;
};
