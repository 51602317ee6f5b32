// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/atspi/PrivateSocket.h"

#include <QList>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform::linux_
{

std::optional<PrivateSocket> parsePrivateAddress(const QByteArray &address)
{
    constexpr char transport[] = "unix:";
    if (!address.startsWith(transport) || address.contains(';'))
        return std::nullopt;
    std::optional<PrivateSocket> socket;
    bool hasGuid = false;
    for (const QByteArray &pair : address.mid(sizeof transport - 1).split(',')) {
        const qsizetype equals = pair.indexOf('=');
        const QByteArray key = pair.left(equals);
        // Values are escaped as in URLs, as D-Bus has it for server addresses.
        const QByteArray value = QByteArray::fromPercentEncoding(pair.mid(equals + 1));
        if (equals < 0 || value.isEmpty() || value.contains('\0'))
            return std::nullopt;
        if (key == "guid" && !hasGuid)
            hasGuid = true;
        else if (!socket && key == "abstract")
            socket = PrivateSocket{value, true};
        else if (!socket && key == "path" && value.startsWith('/'))
            socket = PrivateSocket{value, false};
        else
            return std::nullopt;
    }
    return socket;
}

int connectToProcess(const PrivateSocket &socket, pid_t pid, uid_t uid)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    // An abstract name begins with a NUL and has none at its end; a path has one at its end.
    const auto length = std::size_t(socket.name.size());
    if (length + 1 > sizeof address.sun_path)
        return -1;
    std::memcpy(address.sun_path + (socket.isAbstract ? 1 : 0), socket.name.constData(), length);
    const auto size = socklen_t(offsetof(sockaddr_un, sun_path) + length + 1);

    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0)
        return -1;
    ucred peer{};
    socklen_t peerSize = sizeof peer;
    if (connect(descriptor, reinterpret_cast<const sockaddr *>(&address), size) == 0 &&
        getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &peerSize) == 0 && peer.pid == pid &&
        peer.uid == uid)
        return descriptor;
    close(descriptor);
    return -1;
}

} // namespace platform::linux_
