// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/WindowProperties.h"

#include <tuple>

namespace platform::linux_
{

QString windowClassOf(const QByteArray &property)
{
    const QList<QByteArray> parts = property.split('\0');
    return parts.size() > 1 ? QString::fromUtf8(parts[1]) : QString();
}

QRect withoutShadow(const QRect &surface, const QList<quint32> &property)
{
    constexpr qsizetype sides = 4;
    if (property.size() < sides)
        return surface;
    const auto [left, right, top, bottom] = std::tuple<qint64, qint64, qint64, qint64>(
        property[0], property[1], property[2], property[3]);
    if (left + right >= surface.width() || top + bottom >= surface.height())
        return surface;
    return surface.adjusted(int(left), int(top), -int(right), -int(bottom));
}

} // namespace platform::linux_
