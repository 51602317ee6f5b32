// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QKeySequence>
#include <QPointF>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <optional>

class QWidget;

namespace platform
{

/// An application that is running now.
struct RunningApplication {
    std::int32_t processIdentifier = 0;
    /// What the user knows it as; absent when it has no name.
    std::optional<QString> localizedName;
};

/// How the application presents itself to the desktop.
enum class ActivationPolicy {
    /// In the task bar and the window switcher.
    Regular,
    /// Kept out of both; reached through its tray item.
    Accessory,
};

/// The desktop around us: which application is in front, how our own windows behave among the
/// others, and who holds the keyboard. Main thread only; no call waits for another application.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// The running application with this process id, if there is one.
    virtual std::optional<RunningApplication> runningApplication(std::int32_t pid) = 0;

    /// Process id of the application whose window is active; absent when there is none.
    virtual std::optional<std::int32_t> frontmostApplication() = 0;

    /// Shows `window` in, or keeps it out of, the task bar and the window switcher.
    virtual void setActivationPolicy(QWidget *window, ActivationPolicy policy) = 0;

    /// Shows `window`, unminimised, in front, with the keyboard focus.
    virtual void activate(QWidget *window) = 0;

    /// Prepares a borderless widget, before it is first shown, to float above other applications'
    /// windows on every desktop, out of the task bar, without ever taking the focus when it is
    /// shown or clicked. `becomesKeyOnlyIfNeeded`: takes the keyboard when, and only when,
    /// focusPanel() asks for it.
    virtual void preparePanel(QWidget *panel, bool becomesKeyOnlyIfNeeded) = 0;

    /// Gives the keyboard to a panel prepared with `becomesKeyOnlyIfNeeded`, because the user
    /// wants to edit text in it. Remembers who had it before.
    virtual void focusPanel(QWidget *panel) = 0;

    /// Gives the keyboard back to the window that had it before focusPanel(), and calls
    /// `completion` once, on the main thread, as soon as that window has it; at once when we never
    /// took it; with false when the window is gone or does not take it.
    virtual void restoreFocus(std::function<void(bool)> completion) = 0;

    /// What this desktop session does not offer of what we need, and the way out, in one sentence
    /// for the user; empty where everything works. It can change while we run.
    virtual QString sessionLimitation() { return {}; }

    /// Calls `dismissed` when the user wants `panel`, which is shown, gone: Escape is pressed,
    /// in any window, or a mouse button outside all panels. Ends when the panel leaves
    /// the screen. Where the system offers no such thing, it is never called.
    virtual void watchDismissal(QWidget *panel, std::function<void()> dismissed)
    {
        (void)panel;
        (void)dismissed;
    }

    /// Calls `pressed` whenever the user presses `keys`, in whichever program, in place of the
    /// former shortcut; an empty sequence ends it. False where the system offers no such thing, or
    /// another program has these keys.
    virtual bool setGlobalShortcut(const QKeySequence &keys, std::function<void()> pressed)
    {
        (void)pressed;
        return keys.isEmpty();
    }

    /// Where the pointer is on the screen, in points. While a button is held down in a panel that
    /// is moved with it, this is right where the events' own positions may not be.
    virtual QPointF mouseLocation() = 0;

    /// Asks the desktop to open `url` with the user's program for it. False when nothing does.
    virtual bool open(const QUrl &url) = 0;
};

} // namespace platform
