// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "Environment.h"
#include "FileLock.h"
#include "Flush.h"
#include "MetricPost/MetricPostIdentity.h"
#include "MetricPost/MetricPostOptions.h"
#include "MetricPost/MetricPostType.h"
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
#include <mutex>
#include <optional>
#include <stop_token>

namespace metricpost
{

/// What stands behind a MetricPostInstance: it wires the store, tracking and flushing together.
/// The public operations are documented there.
class InstanceCore final : public FlushDelegate, private TrackOwner
{
public:
    InstanceCore(const MetricPostOptions &options, const Environment &environment);
    ~InstanceCore() override;
    Q_DISABLE_COPY_MOVE(InstanceCore)

    const QString &apiToken() const { return m_options.token; }
    const QString &name() const { return m_name; }
    const MetricPostOptions &options() const { return m_options; }

    void track(const QString &event, const Properties &properties);
    void time(const QString &event);
    void clearTimedEvent(const QString &event);
    void clearTimedEvents();

    void registerSuperProperties(const Properties &properties);
    void registerSuperPropertiesOnce(const Properties &properties,
                                     const std::optional<MetricPostType> &defaultValue);
    void unregisterSuperProperty(const QString &propertyName);
    void clearSuperProperties();

    void flush(bool performFullFlush, std::function<void()> completion) override;

    void optOutTracking();
    void optInTracking();
    bool hasOptedOutTracking() const override;

    MetricPostIdentity identity() const;
    Properties superProperties() const;
    Properties timedEvents() const;

    bool trackAutomaticEventsEnabled() const override { return m_trackAutomaticEventsEnabled; }
    void setTrackAutomaticEventsEnabled(bool enabled) { m_trackAutomaticEventsEnabled = enabled; }
    Flush &flushInstance() { return m_flushInstance; }
    const Flush &flushInstance() const { return m_flushInstance; }

    bool loggingEnabled() const { return m_loggingEnabled; }
    void setLoggingEnabled(bool enabled);

    qint64 droppedRecords() const { return m_droppedRows + m_trackingQueue.droppedTasks(); }
    qint64 refusedRecords() const { return m_refusedRecords; }

    /// Whether the caller is a task of one of the two queues.
    bool isOwnThread() const
    {
        return m_trackingQueue.isCurrentThread() || m_networkQueue.isCurrentThread();
    }

    void waitUntilStored();
    bool shutdown(std::chrono::milliseconds limit);

private:
    struct Store;

    bool flushSuccess(FlushType type, const QList<qint32> &ids) override;
    void flushRefused(FlushType type, const QList<qint32> &ids) override;
    bool isSendingAllowed() const override;
    void setupListeners();
    void unarchive();
    void deliver(bool performFullFlush);
    bool deliverBatch(FlushType type, const ProxyServerResource &proxy);
    bool claimUploads();
    bool mayRecord(Store &store);
    void afterGroup();
    void onStore(std::function<void(Store &)> work);
    void changeTimedEvents(std::function<Properties(const Properties &)> change);
    void changeSuperProperties(std::function<Properties(Store &, const Properties &)> change);

    const MetricPostOptions m_options;
    const QString m_name;
    const Environment m_environment;
    std::atomic<bool> m_trackAutomaticEventsEnabled;
    std::atomic<bool> m_optedOut;
    std::atomic<bool> m_loggingEnabled{false};
    std::atomic<qint64> m_droppedRows{0};
    std::atomic<qint64> m_refusedRecords{0};

    mutable ReadWriteLock m_readWriteLock{QStringLiteral("dratru.globallock")};
    MetricPostIdentity m_identity;
    Properties m_timedEvents;
    Properties m_superProperties;

    std::stop_source m_stop;
    std::unique_ptr<Store> m_store;
    SerialQueue m_trackingQueue;
    SerialQueue m_networkQueue;
    Flush m_flushInstance;
    /// Network queue only. Held while rows are sent and removed.
    std::optional<FileLock> m_uploadClaim;
    int m_applicationListener = 0;
    std::once_flag m_shutdownOnce;
};

} // namespace metricpost
