// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/sway/SwayWindows.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <unistd.h>

namespace platform::linux_
{

namespace
{

constexpr int patience = 250;        // milliseconds
constexpr int reconnectPause = 2000; // milliseconds

} // namespace

std::unique_ptr<SwayWindows> SwayWindows::open(const QByteArray &path)
{
    std::unique_ptr<SwayWindows> windows(new SwayWindows(path));
    return windows->isAvailable() ? std::move(windows) : nullptr;
}

SwayWindows::SwayWindows(const QByteArray &path)
    : m_path(path)
{
}

bool SwayWindows::connectToSocket()
{
    if (m_ipc.isOpen())
        return true;
    m_notifier.reset();
    if (m_sinceAttempt.isValid() && m_sinceAttempt.elapsed() < reconnectPause)
        return false;
    m_sinceAttempt.start();
    m_isStale = true;
    m_tree = {};
    if (!m_ipc.open(m_path) ||
        !m_ipc.request(SwayIpc::Type::Subscribe, R"(["window","workspace"])", patience))
        return false;
    // Events that stayed in the socket would in the end make the compositor close it.
    m_notifier = std::make_unique<QSocketNotifier>(m_ipc.socket(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &SwayWindows::readEvents);
    return true;
}

void SwayWindows::readEvents()
{
    const QList<SwayIpc::Message> events = m_ipc.takeEvents();
    for (const SwayIpc::Message &event : events) {
        // A title that changes all the time is no reason to fetch the tree.
        if (!m_isStale)
            m_isStale = QJsonDocument::fromJson(event.payload)[u"change"].toString() != u"title";
    }
    if (!m_ipc.isOpen() && m_notifier)
        m_notifier->setEnabled(false);
}

bool SwayWindows::fetchTree()
{
    const auto answer = m_ipc.request(SwayIpc::Type::GetTree, {}, patience);
    if (!answer)
        return false;
    m_tree = SwayTree::read(*answer);
    m_isStale = false;
    return true;
}

void SwayWindows::refresh()
{
    if (!connectToSocket())
        return;
    readEvents();
    if (m_isStale)
        fetchTree();
}

bool SwayWindows::isAvailable()
{
    refresh();
    return m_ipc.isOpen();
}

std::optional<ActiveWindow::Window> SwayWindows::activeWindow()
{
    refresh();
    if (!m_tree.focused)
        return std::nullopt;
    return Window{*m_tree.focused, {m_tree.windows[*m_tree.focused].pid}};
}

std::optional<WindowPlace> SwayWindows::geometry(std::uint32_t window)
{
    if (!connectToSocket() || !fetchTree())
        return std::nullopt;
    const auto found = m_tree.windows.constFind(window);
    return found == m_tree.windows.cend() ? std::nullopt : std::optional(found->place);
}

QString SwayWindows::activeApplicationId()
{
    refresh();
    return m_tree.focused ? m_tree.windows[*m_tree.focused].applicationId : QString();
}

void SwayWindows::activateOwnWindow(const QString &title)
{
    if (!connectToSocket() || !fetchTree())
        return;
    for (auto it = m_tree.windows.cbegin(); it != m_tree.windows.cend(); ++it) {
        if (it->pid == getpid() && it->title == title) {
            m_ipc.request(SwayIpc::Type::RunCommand,
                          "[con_id=" + QByteArray::number(it.key()) + "] focus", patience);
            return;
        }
    }
}

} // namespace platform::linux_
