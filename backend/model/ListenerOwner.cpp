// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/ListenerOwner.h"

#include <QFile>

#include <pwd.h>

namespace
{

/// The state "listen" of a socket in the kernel's tables.
const QByteArray listening = QByteArrayLiteral("0A");

/// How closely a local address of the tables fits 127.0.0.1; 0 when it does not.
int closeness(const QByteArray &address)
{
    // Addresses are hexadecimal, each 32 bits in the machine's byte order.
    if (address == "0100007F")
        return 4;
    if (address == "0000000000000000FFFF00000100007F")
        return 3;
    if (address == "00000000")
        return 2;
    return address == "00000000000000000000000000000000" ? 1 : 0;
}

} // namespace

std::optional<unsigned> listenerOwner(quint16 port, const QString &folder)
{
    int closest = 0;
    std::optional<unsigned> owner;
    for (const char16_t *table : {u"/tcp", u"/tcp6"}) {
        QFile file(folder + QString::fromUtf16(table));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const auto lines = file.readAll().split('\n');
        for (const QByteArray &line : lines) {
            // sl, local address, remote address, state, queues, timer, retransmits, uid
            const auto fields = line.simplified().split(' ');
            if (fields.size() < 8 || fields[3] != listening)
                continue;
            const auto local = fields[1].split(':');
            if (local.size() != 2 || local[1].toUShort(nullptr, 16) != port)
                continue;
            const int close = closeness(local[0]);
            const unsigned uid = fields[7].toUInt();
            if (close > closest)
                owner = uid;
            else if (close == closest && close > 0 && owner != uid)
                owner.reset();
            closest = std::max(closest, close);
        }
    }
    return owner;
}

bool isSystemAccount(unsigned uid)
{
    // Debian Policy 9.2.2: people begin at 1000.
    constexpr unsigned firstPerson = 1000;
    return uid < firstPerson;
}

QString accountName(unsigned uid)
{
    const passwd *entry = ::getpwuid(uid);
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString::number(uid);
}
