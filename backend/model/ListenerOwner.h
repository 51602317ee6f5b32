// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <optional>

/// The user id of the process that listens on 127.0.0.1:`port`, as the kernel has it in
/// "tcp" and "tcp6" below `folder` (proc(5)). The listener that a connection reaches counts: one on
/// the address itself before one on all addresses. Nothing when none listens, or when two users
/// share the port so that either may get a connection.
std::optional<unsigned> listenerOwner(quint16 port,
                                      const QString &folder = QStringLiteral("/proc/net"));

/// Whether a user id is one of the system's own accounts: root, or a service's.
bool isSystemAccount(unsigned uid);

/// The name of a user id, or its number.
QString accountName(unsigned uid);
