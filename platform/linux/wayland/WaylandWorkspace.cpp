// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/WaylandWorkspace.h"

#include "platform/linux/desktop/OpenUrl.h"

#include <QCoreApplication>
#include <QCursor>
#include <QUrl>
#include <QWidget>

namespace platform::linux_
{

WaylandWorkspace::WaylandWorkspace(WindowSource *source, LayerPanels &panels,
                                   LayerKeyboard &keyboard, QString sessionLimitation)
    : m_source(source)
    , m_sessionLimitation(std::move(sessionLimitation))
    , m_panels(panels)
    , m_keyboard(keyboard)
{
}

std::optional<RunningApplication> WaylandWorkspace::runningApplication(std::int32_t pid)
{
    QString applicationId;
    if (m_source) {
        const auto active = m_source->activeWindow();
        if (active && active->pids.contains(pid))
            applicationId = m_source->activeApplicationId();
    }
    return m_names.application(pid, applicationId);
}

std::optional<std::int32_t> WaylandWorkspace::frontmostApplication()
{
    if (m_keyboard.isOut())
        return std::int32_t(QCoreApplication::applicationPid());
    const auto active = m_source ? m_source->activeWindow() : std::nullopt;
    if (!active || active->pids.isEmpty())
        return {};
    return active->pids.first();
}

void WaylandWorkspace::setActivationPolicy(QWidget *, ActivationPolicy) {}

void WaylandWorkspace::activate(QWidget *window)
{
    if (!window)
        return;
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    const bool wasVisible = window->isVisible();
    window->show();
    window->raise();
    window->activateWindow();
    // A window that appears gets the keyboard by itself.
    if (wasVisible && m_source)
        m_source->activateOwnWindow(window->windowTitle());
}

void WaylandWorkspace::preparePanel(QWidget *panel, bool becomesKeyOnlyIfNeeded)
{
    m_panels.prepare(panel, becomesKeyOnlyIfNeeded);
}

void WaylandWorkspace::focusPanel(QWidget *panel)
{
    m_keyboard.take(panel);
}

void WaylandWorkspace::restoreFocus(std::function<void(bool)> completion)
{
    m_keyboard.giveBack(std::move(completion));
}

QPointF WaylandWorkspace::mouseLocation()
{
    return m_panels.pressedPointer().value_or(QPointF(QCursor::pos()));
}

bool WaylandWorkspace::open(const QUrl &url)
{
    return openUrl(url);
}

QString WaylandWorkspace::sessionLimitation()
{
    if (m_source && !m_source->isAvailable())
        return QCoreApplication::translate(
            "Session", "The compositor no longer tells Quillet where windows are: start Quillet "
                       "again, and if that does not help, log out and in.");
    return m_sessionLimitation;
}

} // namespace platform::linux_
