// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Workspace.h"
#include "quillet/widgets/WindowMetrics.h"

#include <QObject>
#include <QWidget>

#include <functional>

/// An empty view in a window's background that hands the window to `callback`, once, as soon as the
/// event loop runs. When it is in no window by then, nothing happens. Main thread only.
class WindowAccessor : public QWidget
{
    Q_OBJECT
public:
    explicit WindowAccessor(std::function<void(QWidget *window)> callback,
                            QWidget *parent = nullptr);
};

/// An empty view in a window's background that fixes the size of the window's content, once, as
/// soon as the event loop runs, so that the user cannot change it. Lengths in points. Main thread
/// only.
class WindowSizeSetter : public QWidget
{
    Q_OBJECT
public:
    WindowSizeSetter(double width, double height, QWidget *parent = nullptr);
};

/// Makes the program a background one when the main window closes. Main thread only.
class WindowDelegate : public QObject
{
    Q_OBJECT
public:
    explicit WindowDelegate(platform::Workspace &workspace)
        : m_workspace(workspace)
    {
    }

    void windowWillClose(QWidget *window);

Q_SIGNALS:
    void windowClosed();

protected:
    /// Installed on the window, it sees the close event.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    platform::Workspace &m_workspace;
};

/// Keeps the delegate alive, which the window does not own.
class WindowDelegateHolder
{
public:
    explicit WindowDelegateHolder(platform::Workspace &workspace)
        : delegate(workspace)
    {
    }

    WindowDelegate delegate;
};
