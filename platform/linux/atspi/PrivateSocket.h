// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

#include <optional>
#include <sys/types.h>

namespace platform::linux_
{

/// The Unix socket on which an application says that it listens for direct calls.
struct PrivateSocket {
    QByteArray name;
    /// Whether `name` is in the abstract namespace, in contrast to the file system.
    bool isAbstract = false;

    friend bool operator==(const PrivateSocket &, const PrivateSocket &) = default;
};

/// Reads a D-Bus server address. Nothing unless it is one address of the transport "unix" with
/// exactly one of "path" (absolute) and "abstract", and at most "guid" beside it: the other
/// transports run commands or reach other machines, and any program on the bus can name them.
std::optional<PrivateSocket> parsePrivateAddress(const QByteArray &address);

/// Connects without waiting. The descriptor, which the caller closes; -1 unless the process that
/// listens there is `pid` and runs as `uid`, both as the kernel says (SO_PEERCRED, unix(7)).
/// Nothing is sent.
int connectToProcess(const PrivateSocket &socket, pid_t pid, uid_t uid);

} // namespace platform::linux_
