// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "Environment.h"
#include "Flush.h"
#include "MetricPostIdentity.h"
#include "MetricPostOptions.h"
#include "MetricPostPersistence.h"
#include "ReadWriteLock.h"
#include "SerialQueue.h"
#include "SessionMetadata.h"
#include "Track.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>

namespace metricpost
{

/// One analytics project's client: it wires the store, tracking and flushing together.
///
/// Any thread may call it. Nothing waits: what a call has to do happens on the instance's two
/// serial queues, the tracking queue (assembling and storing) and the network queue (sending).
/// Completions run on the main thread. Destroy it on a thread that is none of its queues; it
/// is held by its registry and by whoever asked for it.
class MetricPostInstance final : private FlushDelegate, private TrackOwner
{
public:
    /// Reserved for notifications about super properties; the desktop observes none.
    static constexpr QLatin1String registerSuperPropertiesNotificationName{
        "dratru.properties.register"};
    static constexpr QLatin1String unregisterSuperPropertiesNotificationName{
        "dratru.properties.unregister"};

    MetricPostInstance(const MetricPostOptions &options, const Environment &environment);
    ~MetricPostInstance() override;
    Q_DISABLE_COPY_MOVE(MetricPostInstance)

    const QString &apiToken() const { return m_options.token; }
    const QString &name() const { return m_name; }
    const MetricPostOptions &options() const { return m_options; }

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
    void flush(bool performFullFlush = false, std::function<void()> completion = {}) override;

    /// Empties the queues and records nothing from now on, in later runs too.
    void optOutTracking();
    void optInTracking();
    bool hasOptedOutTracking() const override;

    QString distinctId() const;
    std::optional<QString> anonymousId() const;
    MetricPostIdentity identity() const;
    Properties superProperties() const;
    Properties timedEvents() const;
    static QString addPrefixToDeviceId(const QString &deviceId);

    bool trackAutomaticEventsEnabled() const override { return m_trackAutomaticEventsEnabled; }
    void setTrackAutomaticEventsEnabled(bool enabled) { m_trackAutomaticEventsEnabled = enabled; }

    /// Where events go; may be set at any time. Empty: they wait in the store.
    QString serverURL() const { return m_flushInstance.serverURL(); }
    void setServerURL(const QString &url) { m_flushInstance.setServerURL(url); }
    /// Seconds.
    double flushInterval() const { return m_flushInstance.flushInterval(); }
    void setFlushInterval(double interval) { m_flushInstance.setFlushInterval(interval); }
    Flush &flushInstance() { return m_flushInstance; }

    /// The library's log on standard output, for all instances.
    bool loggingEnabled() const { return m_loggingEnabled; }
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
    /// What exists only on the tracking queue, opened there so that no caller waits for a disk.
    struct Store;

    void flushSuccess(FlushType type, const QList<qint32> &ids) override;
    void setupListeners();
    void unarchive();
    void deliver(bool performFullFlush);
    void onStore(std::function<void(Store &)> work);
    void changeTimedEvents(std::function<Properties(const Properties &)> change);
    void changeSuperProperties(std::function<Properties(Store &, const Properties &)> change);

    const MetricPostOptions m_options;
    const QString m_name;
    const Environment m_environment;
    std::atomic<bool> m_trackAutomaticEventsEnabled;
    std::atomic<bool> m_optedOut;
    std::atomic<bool> m_loggingEnabled{false};

    mutable ReadWriteLock m_readWriteLock{QStringLiteral("dratru.globallock")};
    MetricPostIdentity m_identity;
    Properties m_timedEvents;
    Properties m_superProperties;

    std::stop_source m_stop;
    std::unique_ptr<Store> m_store;
    SerialQueue m_trackingQueue;
    SerialQueue m_networkQueue;
    Flush m_flushInstance;
    int m_applicationListener = 0;
    std::once_flag m_shutdownOnce;
};

} // namespace metricpost
