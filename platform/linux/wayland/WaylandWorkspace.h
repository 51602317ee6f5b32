// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Workspace.h"
#include "platform/linux/desktop/ApplicationNames.h"
#include "platform/linux/wayland/WindowSource.h"
#include "platform/linux/wayland/layers/LayerKeyboard.h"
#include "platform/linux/wayland/layers/LayerPanels.h"

#include <memory>

namespace platform::linux_
{

/// The desktop around us in a Wayland session. Main thread only. Waits for the compositor, never
/// for another client.
class WaylandWorkspace : public Workspace
{
public:
    /// `source`: what reports other programs' windows; null where nothing does. All must outlive
    /// this. `sessionLimitation`: what is missing in this session.
    WaylandWorkspace(WindowSource *source, LayerPanels &panels, LayerKeyboard &keyboard,
                     QString sessionLimitation);

    std::optional<RunningApplication> runningApplication(std::int32_t pid) override;
    /// Ourselves while one of our panels has the keyboard.
    std::optional<std::int32_t> frontmostApplication() override;
    /// Wayland has no request for it: compositors with a task bar list every window.
    void setActivationPolicy(QWidget *window, ActivationPolicy policy) override;
    void activate(QWidget *window) override;
    void preparePanel(QWidget *panel, bool becomesKeyOnlyIfNeeded) override;
    void focusPanel(QWidget *panel) override;
    /// Gives up after two seconds.
    void restoreFocus(std::function<void(bool)> completion) override;
    QPointF mouseLocation() override;
    bool open(const QUrl &url) override;
    QString sessionLimitation() override;

private:
    WindowSource *m_source;
    const QString m_sessionLimitation;
    LayerPanels &m_panels;
    LayerKeyboard &m_keyboard;
    ApplicationNames m_names;
};

} // namespace platform::linux_
