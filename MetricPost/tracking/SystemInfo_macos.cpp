// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "SystemInfo.h"

#include <QByteArray>
#include <QSysInfo>

#include <sys/sysctl.h>

namespace metricpost
{

namespace
{

std::optional<QString> systemValue(const char *name)
{
    std::size_t size = 0;
    if (sysctlbyname(name, nullptr, &size, nullptr, 0) != 0 || size == 0)
        return std::nullopt;
    QByteArray value(qsizetype(size), '\0');
    if (sysctlbyname(name, value.data(), &size, nullptr, 0) != 0)
        return std::nullopt;
    return QString::fromUtf8(value.constData());
}

} // namespace

SystemInfo SystemInfo::read(const QString &)
{
    const QString unknown = QStringLiteral("Unknown");
    const auto version = systemValue("kern.osproductversion");
    const auto build = systemValue("kern.osversion");
    // The platform serial number of the I/O registry.
    const QByteArray serialNumber = QSysInfo::machineUniqueId();
    return {
        .os = QStringLiteral("macOS"),
        .osVersion = QStringLiteral("Version ") + version.value_or(unknown) +
                     QStringLiteral(" (Build ") + build.value_or(unknown) + u')',
        .manufacturer = QStringLiteral("Apple"),
        .model = systemValue("hw.model").value_or(unknown),
        .deviceIdentifier = serialNumber.isEmpty()
                                ? std::nullopt
                                : std::optional(QString::fromLatin1(serialNumber)),
    };
}

} // namespace metricpost
