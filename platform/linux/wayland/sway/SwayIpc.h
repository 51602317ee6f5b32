// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>

#include <cstdint>
#include <optional>

namespace platform::linux_
{

/// A connection to the socket on which sway, and other programs of the i3 family, answer questions
/// and report changes. A message is the magic "i3-ipc", the length of its payload and its type, two
/// 32-bit numbers in the machine's own order, and the payload, which is JSON (sway-ipc(7)).
class SwayIpc
{
public:
    enum class Type : std::uint32_t {
        RunCommand = 0,
        Subscribe = 2,
        GetTree = 4,
        WorkspaceEvent = 0x80000000,
        WindowEvent = 0x80000003,
    };

    struct Message {
        Type type = Type::GetTree;
        QByteArray payload;
    };

    SwayIpc() = default;
    ~SwayIpc();
    SwayIpc(const SwayIpc &) = delete;
    SwayIpc &operator=(const SwayIpc &) = delete;

    bool open(const QByteArray &path);
    void close();
    bool isOpen() const { return m_socket >= 0; }
    int socket() const { return m_socket; }

    /// Asks, and waits for the answer no longer than `patience` milliseconds. Without one the
    /// connection is closed: a late answer would be taken for that to another question.
    std::optional<QByteArray> request(Type type, const QByteArray &payload, int patience);

    /// The events that have arrived meanwhile; does not wait.
    QList<Message> takeEvents();

    /// Takes the next whole message out of `buffer`; `isValid` becomes false where what is there is
    /// no message.
    static std::optional<Message> takeMessage(QByteArray &buffer, bool &isValid);
    static QByteArray encoded(Type type, const QByteArray &payload);

private:
    void receive();
    bool send(const QByteArray &message);

    int m_socket = -1;
    QByteArray m_buffer;
    QList<Message> m_events;
    std::optional<Message> m_answer;
};

} // namespace platform::linux_
