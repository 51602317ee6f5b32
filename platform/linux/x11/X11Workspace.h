// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Workspace.h"
#include "platform/linux/desktop/ApplicationNames.h"
#include "platform/linux/ports/ActiveWindow.h"
#include "platform/linux/x11/DismissalWatch.h"
#include "platform/linux/x11/FloatingPanels.h"
#include "platform/linux/x11/KeyboardLoan.h"
#include "platform/linux/x11/XcbConnection.h"

#include <QHash>
#include <QObject>
#include <QPointer>

namespace platform::linux_
{

/// The desktop around us on X11. Where the toolkit does not run on X11, only what needs no X server
/// works: there is no front application, and panels have what their window flags give.
///
/// Main thread only. Waits for the X server, never for another client.
class X11Workspace : public QObject, public Workspace
{
    Q_OBJECT
public:
    /// All must outlive this object; `connection`, `keyboard` and `pointer` are null where
    /// there is no X server. `sessionLimitation`: what is missing here, because the X11 server is
    /// only a part of the session.
    X11Workspace(XcbConnection *connection, FloatingPanels &panels, KeyboardLoan *keyboard,
                 PointerWatch *pointer, ActiveWindow &activeWindow, QString sessionLimitation = {});
    ~X11Workspace() override;

    /// Named by the desktop entry that starts the program where one is found, else by the process.
    std::optional<RunningApplication> runningApplication(std::int32_t pid) override;

    /// Ourselves while one of our panels has the keyboard. Otherwise the owner of the active
    /// window; without a window manager, of the window that has the input focus.
    std::optional<std::int32_t> frontmostApplication() override;

    void setActivationPolicy(QWidget *window, ActivationPolicy policy) override;

    /// Also ends the start-up notification named by the environment variable DESKTOP_STARTUP_ID and
    /// removes the variable: set it to the id that a second start has handed over.
    void activate(QWidget *window) override;

    void preparePanel(QWidget *panel, bool becomesKeyOnlyIfNeeded) override;
    void focusPanel(QWidget *panel) override;
    /// Gives up after two seconds.
    void restoreFocus(std::function<void(bool)> completion) override;
    void watchDismissal(QWidget *panel, std::function<void()> dismissed) override;
    bool setGlobalShortcut(const QKeySequence &keys, std::function<void()> pressed) override;
    QPointF mouseLocation() override;
    bool open(const QUrl &url) override;
    QString sessionLimitation() override { return m_sessionLimitation; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void applyPolicy(QWidget *window, bool mapped);
    void requestActivation(QWidget *window);

    XcbConnection *const m_connection;
    FloatingPanels &m_panels;
    KeyboardLoan *const m_keyboard;
    ActiveWindow &m_activeWindow;
    std::unique_ptr<DismissalWatch> m_dismissal;
    std::unique_ptr<KeyGrab> m_shortcut;
    const QString m_sessionLimitation;
    ApplicationNames m_names;
    QHash<QWidget *, ActivationPolicy> m_policies;
    /// Shown, and to be activated as soon as the X server shows it.
    QPointer<QWidget> m_activateWhenExposed;
};

} // namespace platform::linux_
