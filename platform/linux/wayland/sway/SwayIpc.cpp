// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/sway/SwayIpc.h"

#include <QDeadlineTimer>

#include <array>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace platform::linux_
{

namespace
{

constexpr QByteArrayView magic("i3-ipc");
constexpr qsizetype headerSize = 6 + 4 + 4;
/// The tree of thousands of windows is smaller.
constexpr std::uint32_t maxPayload = 32U << 20;
constexpr std::uint32_t eventBit = 0x80000000;

} // namespace

SwayIpc::~SwayIpc()
{
    close();
}

bool SwayIpc::open(const QByteArray &path)
{
    close();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || path.size() >= qsizetype(sizeof(address.sun_path)))
        return false;
    std::memcpy(address.sun_path, path.constData(), std::size_t(path.size()));
    m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (m_socket >= 0 &&
        ::connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0)
        close();
    return isOpen();
}

void SwayIpc::close()
{
    if (m_socket >= 0)
        ::close(m_socket);
    m_socket = -1;
    m_buffer.clear();
    m_events.clear();
    m_answer.reset();
}

QByteArray SwayIpc::encoded(Type type, const QByteArray &payload)
{
    const std::array numbers{std::uint32_t(payload.size()), std::uint32_t(type)};
    QByteArray message = magic.toByteArray();
    message.append(reinterpret_cast<const char *>(numbers.data()), sizeof(numbers));
    return message + payload;
}

std::optional<SwayIpc::Message> SwayIpc::takeMessage(QByteArray &buffer, bool &isValid)
{
    isValid = magic.startsWith(QByteArrayView(buffer).first(qMin(buffer.size(), magic.size())));
    if (!isValid || buffer.size() < headerSize)
        return std::nullopt;
    std::array<std::uint32_t, 2> numbers{};
    std::memcpy(numbers.data(), buffer.constData() + magic.size(), sizeof(numbers));
    const auto [size, type] = numbers;
    isValid = size <= maxPayload;
    if (!isValid || buffer.size() < headerSize + qsizetype(size))
        return std::nullopt;
    Message message{Type(type), buffer.mid(headerSize, size)};
    buffer.remove(0, headerSize + qsizetype(size));
    return message;
}

bool SwayIpc::send(const QByteArray &message)
{
    // A request is far smaller than the socket's buffer: what does not fit finds a server that no
    // longer reads.
    return ::send(m_socket, message.constData(), std::size_t(message.size()), MSG_NOSIGNAL) ==
           message.size();
}

void SwayIpc::receive()
{
    std::array<char, 16384> block;
    while (isOpen()) {
        const ssize_t count = ::recv(m_socket, block.data(), block.size(), 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 && errno == EAGAIN)
            break;
        if (count <= 0) {
            close();
            return;
        }
        m_buffer.append(block.data(), count);
    }
    bool isValid = true;
    while (auto message = takeMessage(m_buffer, isValid)) {
        if (std::uint32_t(message->type) & eventBit)
            m_events.append(*std::move(message));
        else
            m_answer = std::move(message);
    }
    if (!isValid)
        close();
}

std::optional<QByteArray> SwayIpc::request(Type type, const QByteArray &payload, int patience)
{
    m_answer.reset();
    if (!isOpen() || !send(encoded(type, payload))) {
        close();
        return std::nullopt;
    }
    const QDeadlineTimer deadline(patience);
    while (isOpen() && !m_answer && !deadline.hasExpired()) {
        pollfd ready{m_socket, POLLIN, 0};
        if (::poll(&ready, 1, int(deadline.remainingTime())) > 0)
            receive();
    }
    if (!m_answer || m_answer->type != type) {
        close();
        return std::nullopt;
    }
    return std::exchange(m_answer, {})->payload;
}

QList<SwayIpc::Message> SwayIpc::takeEvents()
{
    receive();
    return std::exchange(m_events, {});
}

} // namespace platform::linux_
