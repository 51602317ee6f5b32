// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "Track.h"

#include "AutomaticProperties.h"
#include "MetricPost/MetricPostLogger.h"
#include "MetricPostPersistence.h"
#include "SessionMetadata.h"

#include <array>
#include <charconv>
#include <cmath>

namespace metricpost
{

namespace
{

void merge(Properties &into, const Properties &from)
{
    for (auto entry = from.cbegin(); entry != from.cend(); ++entry)
        into.insert(entry.key(), entry.value());
}

// Seconds with three decimals, halfway cases as printf's "%.3f" rounds them; Qt's own rounding
// differs there.
double rounded(double seconds)
{
    constexpr int decimals = 3;
    std::array<char, 320> text{};
    const auto end =
        std::to_chars(text.begin(), text.end(), seconds, std::chars_format::fixed, decimals).ptr;
    double result = 0;
    std::from_chars(text.begin(), end, result);
    return result;
}

} // namespace

Track::Track(const QString &apiToken, const QString &instanceName, SessionMetadata &metadata,
             MetricPostPersistence &metricPostPersistence,
             std::shared_ptr<UserDefaults> userDefaults)
    : m_apiToken(apiToken)
    , m_instanceName(instanceName)
    , m_metadata(metadata)
    , m_metricPostPersistence(metricPostPersistence)
    , m_userDefaults(std::move(userDefaults))
{
}

Properties Track::track(const QString &event, const Properties &properties, Properties timedEvents,
                        const Properties &superProperties,
                        const MetricPostIdentity &metricPostIdentity, double epochInterval)
{
    QString name = event;
    if (name.isEmpty()) {
        MetricPostLogger::info([] {
            return QStringLiteral(
                "metricpost track called with empty event parameter. using 'mp_event'");
        });
        name = QStringLiteral("mp_event");
    }
    const bool automaticEvents =
        m_metricPostInstance && m_metricPostInstance->trackAutomaticEventsEnabled();
    if (!automaticEvents && name.startsWith(u"$ae_"))
        return timedEvents;
    assertPropertyTypes(properties);

    Properties p = AutomaticProperties::properties();
    p.insert(QStringLiteral("token"), m_apiToken);
    // An integer, so that it goes over the wire without a fraction.
    p.insert(QStringLiteral("time"), qint64(std::round(epochInterval * 1000)));
    if (const auto start = timedEvents.constFind(name); start != timedEvents.cend()) {
        if (const double *startTime = start->get<double>())
            p.insert(QStringLiteral("$duration"), rounded(epochInterval - *startTime));
        timedEvents.remove(name);
    }
    p.insert(QStringLiteral("distinct_id"), metricPostIdentity.distinctID);
    if (metricPostIdentity.anonymousId)
        p.insert(QStringLiteral("$device_id"), *metricPostIdentity.anonymousId);
    if (metricPostIdentity.userId)
        p.insert(QStringLiteral("$user_id"), *metricPostIdentity.userId);
    if (metricPostIdentity.hadPersistedDistinctId) {
        p.insert(QStringLiteral("$had_persisted_distinct_id"),
                 *metricPostIdentity.hadPersistedDistinctId);
    }
    merge(p, superProperties);
    merge(p, properties);

    Properties record{{QStringLiteral("event"), name}, {QStringLiteral("properties"), p}};
    merge(record, m_metadata.toDict(true));
    m_metricPostPersistence.saveEntity(record, PersistenceType::events);
    MetricPostPersistence::saveTimedEvents(timedEvents, m_instanceName, *m_userDefaults);
    return timedEvents;
}

bool Track::hasOptedOut() const
{
    return m_metricPostInstance && m_metricPostInstance->hasOptedOutTracking();
}

Properties Track::registerSuperProperties(const Properties &properties,
                                          Properties superProperties) const
{
    if (hasOptedOut())
        return superProperties;
    assertPropertyTypes(properties);
    merge(superProperties, properties);
    return superProperties;
}

Properties
Track::registerSuperPropertiesOnce(const Properties &properties, Properties superProperties,
                                   const std::optional<MetricPostType> &defaultValue) const
{
    if (hasOptedOut())
        return superProperties;
    assertPropertyTypes(properties);
    for (auto entry = properties.cbegin(); entry != properties.cend(); ++entry) {
        const auto present = superProperties.constFind(entry.key());
        if (present == superProperties.cend() || (defaultValue && present->equals(*defaultValue)))
            superProperties.insert(entry.key(), entry.value());
    }
    return superProperties;
}

Properties Track::unregisterSuperProperty(const QString &propertyName, Properties superProperties)
{
    superProperties.remove(propertyName);
    return superProperties;
}

Properties Track::clearSuperProperties(const Properties &)
{
    return {};
}

Properties Track::time(const QString &event, Properties timedEvents, double startTime)
{
    if (event.isEmpty()) {
        MetricPostLogger::error(
            [] { return QStringLiteral("metricpost cannot time an empty event"); });
        return timedEvents;
    }
    timedEvents.insert(event, startTime);
    return timedEvents;
}

Properties Track::clearTimedEvent(const QString &event, Properties timedEvents)
{
    if (event.isEmpty()) {
        MetricPostLogger::error(
            [] { return QStringLiteral("metricpost cannot clear an empty timed event"); });
        return timedEvents;
    }
    timedEvents.remove(event);
    return timedEvents;
}

Properties Track::clearTimedEvents(const Properties &)
{
    return {};
}

} // namespace metricpost
