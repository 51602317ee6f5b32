// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

#include <functional>
#include <memory>

/// Quillet's item in the desktop's tray, with its menu. Main thread only.
///
/// The item is there as soon as the desktop has a tray, also when the tray comes later or is
/// restarted.
class MenuBarItem : public QObject
{
    Q_OBJECT
public:
    struct Actions {
        std::function<void()> openQuillet;
        std::function<void()> sendFeedback;
        std::function<void()> checkForUpdates;
        std::function<void()> quit;
    };
    /// The menu is there at once, the icon from the event loop.
    explicit MenuBarItem(const Actions &actions);
    ~MenuBarItem() override;

    const QMenu &menu() const { return m_menu; }
    bool isInTray() const { return m_item != nullptr; }

private:
    /// The image "QuilletIcon", six points smaller than the item. A template where the desktop
    /// gives its bar one colour for all; in its own colours elsewhere, because a tray does not tell
    /// whether it is light or dark. A program without that image is not complete: fatal.
    static QIcon labelIcon();
    void show();

    QIcon m_icon;
    QMenu m_menu;
    std::unique_ptr<QSystemTrayIcon> m_item;
    QTimer m_waitForTray;
};
