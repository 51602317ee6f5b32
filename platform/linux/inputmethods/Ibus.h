// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

namespace platform::linux_
{

/// Where IBus notes the address of its bus: a file for each machine and display in the user's
/// configuration (ibus_get_socket_path). `display` is an X display's name, such as ":0.1".
QString ibusAddressFile(const QString &configFolder, const QByteArray &machineId,
                        const QByteArray &display);

/// The address in such a file's text; empty when there is none.
QByteArray ibusAddress(const QByteArray &fileText);

/// Whether the engine of that name hands on keys as they are: the engines for plain keyboard
/// layouts do.
bool isDirectIbusEngine(const QString &engine);

} // namespace platform::linux_
