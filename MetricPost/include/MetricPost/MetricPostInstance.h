// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostIdentity.h"
#include "MetricPost/MetricPostOptions.h"
#include "MetricPost/MetricPostType.h"

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace metricpost
{

class InstanceCore;
struct Environment;

/// The client of one analytics project.
///
/// Any thread may call and destroy it. No call waits: the work happens on the instance's two
/// serial queues, the tracking queue (assembling and storing) and the network queue (sending).
/// Completions run on the main thread. The registry holds each instance until `removeInstance`.
class MetricPostInstance final
{
public:
    /// Reserved for notifications about super properties; the desktop observes none.
    static constexpr QLatin1String registerSuperPropertiesNotificationName{
        "dratru.properties.register"};
    static constexpr QLatin1String unregisterSuperPropertiesNotificationName{
        "dratru.properties.unregister"};

    MetricPostInstance(const MetricPostOptions &options, const Environment &environment);
    ~MetricPostInstance();
    Q_DISABLE_COPY_MOVE(MetricPostInstance)

    const QString &apiToken() const;
    const QString &name() const;
    const MetricPostOptions &options() const;

    /// Records an event, at the time of this call. An empty name becomes "mp_event".
    void track(const QString &event, const Properties &properties = {});
    /// Starts measuring the duration that the next event of that name reports.
    void time(const QString &event);
    void clearTimedEvent(const QString &event);
    void clearTimedEvents();

    /// Properties that go with every event from now on.
    void registerSuperProperties(const Properties &properties);
    void registerSuperPropertiesOnce(const Properties &properties,
                                     const std::optional<MetricPostType> &defaultValue = {});
    void unregisterSuperProperty(const QString &propertyName);
    void clearSuperProperties();

    /// Sends what is stored: one batch of each kind, or everything. While no server is set or a
    /// back-off holds, records stay in the store.
    void flush(bool performFullFlush = false, std::function<void()> completion = {});

    /// Empties the queues and records nothing from now on, in later runs too.
    void optOutTracking();
    void optInTracking();
    bool hasOptedOutTracking() const;

    QString distinctId() const;
    std::optional<QString> anonymousId() const;
    MetricPostIdentity identity() const;
    Properties superProperties() const;
    Properties timedEvents() const;
    static QString addPrefixToDeviceId(const QString &deviceId);

    bool trackAutomaticEventsEnabled() const;
    void setTrackAutomaticEventsEnabled(bool enabled);

    /// Where events go; may be set at any time. Empty: they wait in the store.
    QString serverURL() const;
    void setServerURL(const QString &url);
    /// Setting it asks for a flush and restarts the timer; 0 stops the timer.
    Seconds flushInterval() const;
    void setFlushInterval(Seconds interval);
    /// Records in one request, at least 1.
    int flushBatchSize() const;
    void setFlushBatchSize(int size);
    /// Whether the instance flushes when the application stops being active.
    bool flushOnBackground() const;
    void setFlushOnBackground(bool flush);
    /// Whether the service may derive a location from the request's IP address.
    bool useIPAddressForGeoLocation() const;
    void setUseIPAddressForGeoLocation(bool use);

    /// Records that the bounds of memory and store dropped, and records that the service refused
    /// and that are kept out of later uploads; both since this instance exists.
    qint64 droppedRecords() const;
    qint64 refusedRecords() const;

    /// The library's log on standard output, for all instances.
    bool loggingEnabled() const;
    void setLoggingEnabled(bool enabled);

    QString debugDescription() const;

    /// Waits until everything that was tracked before is in the store.
    void waitUntilStored();

    /// Ends the instance's work within `limit`, whatever network and disk do: stores what was
    /// tracked, gives a request that is under way half of the time to finish, and closes the
    /// database. What was not sent is sent on a later run. Calls after it have no effect. False
    /// when the disk kept the tracking queue busy beyond the limit.
    bool shutdown(std::chrono::milliseconds limit);

private:
    std::unique_ptr<InstanceCore> m_core;
};

} // namespace metricpost
