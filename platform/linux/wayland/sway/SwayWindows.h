// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/wayland/WindowSource.h"
#include "platform/linux/wayland/sway/SwayIpc.h"
#include "platform/linux/wayland/sway/SwayTree.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace platform::linux_
{

/// The windows of a sway session. Subscribes to changes of the focus; after one, the tree is
/// fetched when it is next asked for. A window that is resized without the focus changing reports
/// nothing, so geometry() fetches the tree each time.
class SwayWindows : public QObject, public WindowSource
{
    Q_OBJECT
public:
    /// Null where no sway answers on that socket.
    static std::unique_ptr<SwayWindows> open(const QByteArray &path = qgetenv("SWAYSOCK"));

    bool isAvailable() override;
    std::optional<Window> activeWindow() override;
    std::optional<WindowPlace> geometry(std::uint32_t window) override;
    QString activeApplicationId() override;
    void activateOwnWindow(const QString &title) override;

private:
    explicit SwayWindows(const QByteArray &path);
    bool connectToSocket();
    void readEvents();
    void refresh();
    bool fetchTree();

    const QByteArray m_path;
    SwayIpc m_ipc;
    std::unique_ptr<QSocketNotifier> m_notifier;
    SwayTree m_tree;
    bool m_isStale = true;
    QElapsedTimer m_sinceAttempt;
};

} // namespace platform::linux_
