// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "RetryAfter.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace metricpost
{

double retryAfterSeconds(const QByteArray &header, double now)
{
    constexpr std::chrono::seconds longest = std::chrono::hours(24);
    const QByteArray value = header.trimmed();
    bool isNumber = false;
    double seconds = value.toDouble(&isNumber);
    if (!isNumber) {
        QDateTime date = QLocale::c().toDateTime(QString::fromLatin1(value),
                                                 QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"));
        date.setTimeSpec(Qt::UTC);
        seconds = date.isValid() ? double(date.toSecsSinceEpoch()) - now : 0;
    }
    return std::isfinite(seconds) ? std::clamp(seconds, 0.0, double(longest.count())) : 0;
}

} // namespace metricpost
