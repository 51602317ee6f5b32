// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "Environment.h"

#include "MetricPostPersistence.h"
#include "ProcessClock.h"
#include "QtHTTPTransport.h"
#include "SettingsUserDefaults.h"

#include <QRandomGenerator>
#include <QStandardPaths>

#include <chrono>

namespace metricpost
{

namespace
{

std::optional<QString> folder(QStandardPaths::StandardLocation location)
{
    const QString path = QStandardPaths::writableLocation(location);
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

template <class Clock> double secondsOf()
{
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

bool wishesNoTracking()
{
    const QString value = qEnvironmentVariable("DO_NOT_TRACK").toLower();
    return !value.isEmpty() && value != u"0" && value != u"false";
}

} // namespace

Environment Environment::standard()
{
    const QString suiteFile =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' +
        MetricPostUserDefaultsKeys::suiteName + QStringLiteral(".conf");
    const auto archives = folder(QStandardPaths::GenericDataLocation);
    return {
        .now = [clock = std::make_shared<ProcessClock>(
                    secondsOf<std::chrono::system_clock>,
                    secondsOf<std::chrono::steady_clock>)] { return clock->now(); },
        .random = [] { return QRandomGenerator::global()->generate(); },
        .userDefaults = std::make_shared<SettingsUserDefaults>(suiteFile),
        .cachesFolder = folder(QStandardPaths::GenericCacheLocation),
        .legacyArchiveFolder =
            archives ? std::optional(*archives + QStringLiteral("/MetricPost")) : std::nullopt,
        .transport = std::make_shared<QtHTTPTransport>(),
        .applicationState = std::make_shared<ApplicationState>(),
        .systemInfo = SystemInfo::read(),
        .defaultServerURL = QStringLiteral(METRICPOST_DEFAULT_SERVER_URL),
        .doNotTrack = wishesNoTracking(),
    };
}

} // namespace metricpost
