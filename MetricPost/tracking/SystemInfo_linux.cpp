// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "SystemInfo.h"

#include <QCryptographicHash>
#include <QFile>
#include <QMessageAuthenticationCode>
#include <QStringList>

namespace metricpost
{

namespace
{

QByteArray contents(const QString &path)
{
    constexpr qint64 limit = 64 * 1024;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(limit) : QByteArray();
}

std::optional<QString> firstLine(const QString &path)
{
    // The device tree ends its texts with a NUL.
    const QByteArray text = contents(path).replace('\0', '\n').trimmed();
    if (text.isEmpty())
        return std::nullopt;
    return QString::fromUtf8(text.split('\n').first().trimmed());
}

// os-release(5): NAME=value lines in the shell's quoting.
std::optional<QString> osReleaseValue(const QString &root, QByteArrayView name)
{
    QByteArray text = contents(root + QStringLiteral("/etc/os-release"));
    if (text.isEmpty())
        text = contents(root + QStringLiteral("/usr/lib/os-release"));
    const QList<QByteArray> lines = text.split('\n');
    for (const QByteArray &line : lines) {
        const qsizetype equals = line.indexOf('=');
        if (equals < 0 || QByteArrayView(line).first(equals) != name)
            continue;
        QByteArray value = line.mid(equals + 1).trimmed();
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
            value.back() == value.front()) {
            value = value.mid(1, value.size() - 2);
        }
        if (!value.isEmpty())
            return QString::fromUtf8(value);
    }
    return std::nullopt;
}

// machine-id(5) asks that the identifier itself never leaves the computer; a keyed hash does.
std::optional<QString> hashedMachineId(const QString &root)
{
    const auto machineId = firstLine(root + QStringLiteral("/etc/machine-id"));
    if (!machineId || *machineId == u"uninitialized")
        return std::nullopt;
    return QString::fromLatin1(QMessageAuthenticationCode::hash("MetricPost device identifier",
                                                                machineId->toUtf8(),
                                                                QCryptographicHash::Sha256)
                                   .toHex()
                                   .first(32));
}

} // namespace

SystemInfo SystemInfo::read(const QString &root)
{
    const QString unknown = QStringLiteral("Unknown");
    const QString kernel = root + QStringLiteral("/proc/sys/kernel/");
    const QString dmi = root + QStringLiteral("/sys/class/dmi/id/");

    auto model = firstLine(dmi + QStringLiteral("product_name"));
    if (!model)
        model = firstLine(root + QStringLiteral("/proc/device-tree/model"));
    auto version = osReleaseValue(root, "PRETTY_NAME");
    if (!version)
        version = firstLine(kernel + QStringLiteral("osrelease"));
    return {
        .os = firstLine(kernel + QStringLiteral("ostype")).value_or(unknown),
        .osVersion = version.value_or(unknown),
        .manufacturer = firstLine(dmi + QStringLiteral("sys_vendor")).value_or(unknown),
        .model = model.value_or(unknown),
        .deviceIdentifier = hashedMachineId(root),
    };
}

} // namespace metricpost
