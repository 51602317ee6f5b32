// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/AppDelegate.h"

void AppDelegate::applicationDidFinishLaunching(QWidget *window)
{
    updaterController =
        std::make_unique<UpdateAdvice>(m_notice, m_platform.installation().bundlePath());
    updaterController->start();
    if (!window)
        return;
    m_platform.workspace().setActivationPolicy(window, platform::ActivationPolicy::Regular);
    m_platform.workspace().activate(window);
}
