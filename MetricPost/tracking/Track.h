// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostIdentity.h"
#include "MetricPost/MetricPostType.h"

#include <QString>

#include <memory>
#include <optional>

namespace metricpost
{

class MetricPostPersistence;
class SessionMetadata;
class UserDefaults;

/// What tracking asks of the instance that owns it.
class TrackOwner
{
public:
    virtual ~TrackOwner() = default;
    virtual bool trackAutomaticEventsEnabled() const = 0;
    virtual bool hasOptedOutTracking() const = 0;
};

/// Turns reported events into stored records. It keeps no dictionary of its own: each operation
/// takes the owner's and returns what it becomes.
///
/// Belongs to the instance's tracking queue. What it is built from outlives it.
class Track
{
public:
    Track(const QString &apiToken, const QString &instanceName, SessionMetadata &metadata,
          MetricPostPersistence &metricPostPersistence, std::shared_ptr<UserDefaults> userDefaults);

    /// Without an owner, automatic events are off and the user has not opted out.
    void setMetricPostInstance(const TrackOwner *instance) { m_metricPostInstance = instance; }

    /// Stores one event. The record's properties are the automatic ones, identity and time, the
    /// super properties and the caller's; later ones win. `epochInterval` is the time of the
    /// public call, seconds since 1970. Returns the timed events, without the one that this
    /// event ended.
    Properties track(const QString &event, const Properties &properties, Properties timedEvents,
                     const Properties &superProperties,
                     const MetricPostIdentity &metricPostIdentity, double epochInterval);

    Properties registerSuperProperties(const Properties &properties,
                                       Properties superProperties) const;
    /// Sets what is absent, and what is present with the default value.
    Properties registerSuperPropertiesOnce(const Properties &properties, Properties superProperties,
                                           const std::optional<MetricPostType> &defaultValue) const;
    static Properties unregisterSuperProperty(const QString &propertyName,
                                              Properties superProperties);
    static Properties clearSuperProperties(const Properties &superProperties);

    /// Starts measuring the event's duration at `startTime`, seconds since 1970.
    static Properties time(const QString &event, Properties timedEvents, double startTime);
    static Properties clearTimedEvent(const QString &event, Properties timedEvents);
    static Properties clearTimedEvents(const Properties &timedEvents);

private:
    bool hasOptedOut() const;

    const QString m_apiToken;
    const QString m_instanceName;
    SessionMetadata &m_metadata;
    MetricPostPersistence &m_metricPostPersistence;
    const std::shared_ptr<UserDefaults> m_userDefaults;
    const TrackOwner *m_metricPostInstance = nullptr;
};

} // namespace metricpost
