// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/inputmethods/Ibus.h"

#include <QList>

namespace platform::linux_
{

QString ibusAddressFile(const QString &configFolder, const QByteArray &machineId,
                        const QByteArray &display)
{
    const qsizetype colon = display.lastIndexOf(':');
    const QByteArray host = colon > 0 ? display.first(colon) : QByteArray("unix");
    const QByteArray number = display.mid(colon + 1).split('.').first();
    return QStringLiteral("%1/ibus/bus/%2-%3-%4")
        .arg(configFolder, QString::fromLatin1(machineId), QString::fromLatin1(host),
             QString::fromLatin1(number));
}

QByteArray ibusAddress(const QByteArray &fileText)
{
    const QByteArray key = "IBUS_ADDRESS=";
    for (const QByteArray &line : fileText.split('\n')) {
        if (line.startsWith(key))
            return line.mid(key.size()).trimmed();
    }
    return {};
}

bool isDirectIbusEngine(const QString &engine)
{
    return engine.isEmpty() || engine.startsWith(QLatin1String("xkb:"));
}

} // namespace platform::linux_
