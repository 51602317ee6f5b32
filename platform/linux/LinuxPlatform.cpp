// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/Platform.h"

#include "platform/linux/SessionChoice.h"
#include "platform/linux/WindowSystems.h"
#include "platform/linux/accessibility/AtspiAccessibility.h"
#include "platform/linux/accessibility/ElementFrames.h"
#include "platform/linux/desktop/DesktopProgramAccess.h"
#include "platform/linux/desktop/LinuxInstallation.h"
#include "platform/linux/diagnosis/LinuxDiagnosis.h"
#include "platform/linux/inputmethods/DesktopInputMethods.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QSettings>

#include <thread>

#include <fontconfig/fontconfig.h>
#include <malloc.h>

namespace platform
{

namespace
{

/// Types into the elements of the accessibility service.
class LinuxKeyboard : public KeyboardEvents
{
public:
    LinuxKeyboard(linux_::AtspiAccessibility &accessibility, linux_::Typist &typist)
        : m_accessibility(accessibility)
        , m_typist(typist)
    {
    }

    void CGEventPost(const AXUIElement &target, const QList<KeyboardEvent> &events,
                     std::function<void(TypingResult)> completion) override
    {
        m_typist.type(m_accessibility.typingTarget(target), events, std::move(completion));
    }

private:
    linux_::AtspiAccessibility &m_accessibility;
    linux_::Typist &m_typist;
};

/// The Linux desktop: AT-SPI 2, and X11 or Wayland.
class LinuxPlatform : public Platform
{
public:
    // What is being typed into is known from the accessibility service.
    ~LinuxPlatform() override { m_typist.reset(); }

    Accessibility &accessibility() override { return m_accessibility; }
    KeyboardEvents &keyboard() override { return m_keyboard; }
    Workspace &workspace() override { return m_windowSystem->workspace(); }
    Installation &installation() override { return m_installation; }
    FrameWatch *frameWatch() override { return &m_frames; }
    ProgramAccess *programAccess() override { return &m_programAccess; }

private:
    QSettings m_settings{QStringLiteral("quillet"), QStringLiteral("platform")};
    linux_::LinuxInstallation m_installation;
    linux_::DesktopProgramAccess m_programAccess;
    const std::unique_ptr<linux_::WindowSystem> m_windowSystem = linux_::createWindowSystem();
    linux_::DesktopInputMethods m_inputMethods;
    std::unique_ptr<linux_::Typist> m_typist = linux_::createTypist(m_inputMethods);
    linux_::AtspiAccessibility m_accessibility{*m_typist, m_windowSystem->activeWindow(),
                                               m_settings};
    linux_::ElementFrames m_frames{m_accessibility, m_windowSystem->activeWindow(),
                                   m_windowSystem->windowWatch()};
    LinuxKeyboard m_keyboard{m_accessibility, *m_typist};
};

/// The desktop's facts, and what the choice of a window system makes of the session.
class SessionDiagnosis : public linux_::LinuxDiagnosis
{
public:
    SystemFacts examine() override
    {
        SystemFacts facts = LinuxDiagnosis::examine();
        const auto choice = linux_::SessionChoice::of(linux_::SessionFacts::current());
        facts.limitation = choice.limitation;
        facts.isNativeWayland = choice.usesWayland && choice.limitation.isEmpty();
        return facts;
    }
};

} // namespace

bool hasDisplay()
{
    // Someone who chooses the toolkit's window system by hand knows whether it is there.
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM") ||
        qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        return true;
    return linux_::XcbConnection::canConnect();
}

void prepareProcess()
{
    // A heap for each thread costs two megabytes; ours seldom allocate at the same time.
    mallopt(M_ARENA_MAX, 1);
    linux_::chooseWindowSystem();
    // Reading the configuration of fonts takes longer than anything else that the first window
    // needs, and need not wait until the X server has answered. A thread that asks for a font
    // meanwhile gets its own copy.
    static const std::jthread fonts([] { FcInit(); });
}

std::unique_ptr<Platform> createPlatform()
{
    return std::make_unique<LinuxPlatform>();
}

std::unique_ptr<Diagnosis> createDiagnosis()
{
    return std::make_unique<SessionDiagnosis>();
}

} // namespace platform
