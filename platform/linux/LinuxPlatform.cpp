// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/Platform.h"

#include "platform/linux/accessibility/AtspiAccessibility.h"
#include "platform/linux/desktop/LinuxInstallation.h"
#include "platform/linux/keyboard/XTestKeyboard.h"
#include "platform/linux/x11/X11ActiveWindow.h"
#include "platform/linux/x11/X11Workspace.h"

#include <QSettings>

#include <thread>

#include <fontconfig/fontconfig.h>
#include <malloc.h>

namespace platform
{

namespace
{

/// The Linux desktop: AT-SPI 2 and X11.
class LinuxPlatform : public Platform
{
public:
    Accessibility &accessibility() override { return m_accessibility; }
    KeyboardEvents &keyboard() override { return m_keyboard; }
    Workspace &workspace() override { return m_workspace; }
    Installation &installation() override { return m_installation; }

private:
    QSettings m_settings{QStringLiteral("quillet"), QStringLiteral("platform")};
    linux_::LinuxInstallation m_installation;
    linux_::X11Workspace m_workspace;
    linux_::X11ActiveWindow m_activeWindow;
    linux_::AtspiAccessibility m_accessibility{m_keyboard, m_activeWindow, m_settings};
    /// Ends first: what it is typing into is known from the accessibility.
    linux_::XTestKeyboard m_keyboard{[this] { return m_accessibility.typingTarget(); }};
};

} // namespace

void prepareProcess()
{
    // A heap for each thread costs two megabytes; ours seldom allocate at the same time.
    mallopt(M_ARENA_MAX, 1);
    // Reading the configuration of fonts takes longer than anything else that the first window
    // needs, and need not wait until the X server has answered. Whoever asks for a font meanwhile
    // gets its own copy.
    static const std::jthread fonts([] { FcInit(); });
}

std::unique_ptr<Platform> createPlatform()
{
    return std::make_unique<LinuxPlatform>();
}

} // namespace platform
