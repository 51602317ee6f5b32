// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "InstanceCore.h"

#include "AutomaticProperties.h"
#include "MainQueue.h"
#include "MetricPost/MetricPostInstance.h"
#include "MetricPost/MetricPostLogger.h"

#include <QUuid>

#include <algorithm>

namespace metricpost
{

namespace
{

QString queueLabel(const QString &token, const QString &role)
{
    return QStringLiteral("dratru.") + token + u'.' + role + u')';
}

QString initialServerURL(const MetricPostOptions &options, const Environment &environment)
{
    if (options.proxyServerConfig)
        return options.proxyServerConfig->serverURL;
    return options.serverURL.value_or(environment.defaultServerURL);
}

PersistenceType persistenceType(FlushType type)
{
    switch (type) {
    case FlushType::events:
        return PersistenceType::events;
    case FlushType::people:
        return PersistenceType::people;
    case FlushType::groups:
        break;
    }
    return PersistenceType::groups;
}

constexpr std::array allLogLevels{MetricPostLogLevel::debug, MetricPostLogLevel::info,
                                  MetricPostLogLevel::warning, MetricPostLogLevel::error};

} // namespace

struct InstanceCore::Store {
    Store(const MetricPostOptions &options, const QString &name, const Environment &environment,
          SerialQueue &trackingQueue, std::stop_token stop)
        : persistence(name, {environment.now, environment.cachesFolder, environment.userDefaults,
                             environment.legacyArchiveFolder, std::move(stop)})
        , sessionMetadata(trackingQueue, environment.now, environment.random)
        , trackInstance(options.token, name, sessionMetadata, persistence, environment.userDefaults)
    {
    }

    MetricPostPersistence persistence;
    SessionMetadata sessionMetadata;
    Track trackInstance;
};

InstanceCore::InstanceCore(const MetricPostOptions &options, const Environment &environment)
    : m_options(options)
    , m_name(options.instanceName.value_or(options.token))
    , m_environment(environment)
    , m_trackAutomaticEventsEnabled(options.trackAutomaticEvents)
    , m_optedOut(environment.doNotTrack)
    , m_trackingQueue(queueLabel(options.token, QStringLiteral("tracking")))
    , m_networkQueue(queueLabel(options.token, QStringLiteral("network")))
    , m_flushInstance(initialServerURL(options, environment), options.useGzipCompression,
                      {environment.transport, environment.now, environment.random})
{
    // Who asked for no tracking gets no file either.
    if (!m_environment.doNotTrack) {
        m_trackingQueue.async([this] {
            m_store = std::make_unique<Store>(m_options, m_name, m_environment, m_trackingQueue,
                                              m_stop.get_token());
            m_store->trackInstance.setMetricPostInstance(this);
        });
    }
    AutomaticProperties::computeOnce(m_environment.systemInfo);
    m_flushInstance.setInitialFlushInterval(options.flushInterval);
    m_flushInstance.setDelegate(this);
    unarchive();
    setupListeners();
    if (options.optOutTrackingByDefault && !m_environment.doNotTrack &&
        !MetricPostPersistence::loadOptOutStatusFlag(m_name, *m_environment.userDefaults)) {
        optOutTracking();
    }
    if (options.superProperties)
        registerSuperProperties(*options.superProperties);
}

InstanceCore::~InstanceCore()
{
    constexpr std::chrono::seconds limit{1};
    shutdown(limit);
    // The queues' destructors wait for their threads, which use what is destroyed after them.
}

void InstanceCore::setupListeners()
{
    m_applicationListener = m_environment.applicationState->addListener({
        .applicationDidBecomeActive = [this] { m_flushInstance.applicationDidBecomeActive(); },
        .applicationWillResignActive =
            [this] {
                m_flushInstance.applicationWillResignActive();
                if (m_flushInstance.flushOnBackground())
                    flush(false, {});
            },
    });
}

void InstanceCore::unarchive()
{
    UserDefaults &suite = *m_environment.userDefaults;
    if (!m_environment.doNotTrack &&
        MetricPostPersistence::needMigration(m_name, m_environment.legacyArchiveFolder)) {
        m_trackingQueue.sync([this] { m_store->persistence.migrate(); });
    }
    MetricPostIdentity identity = MetricPostPersistence::loadIdentity(m_name, suite);
    if (identity.distinctID.isEmpty()) {
        std::optional<QString> deviceId;
        if (m_options.useUniqueDistinctId)
            deviceId = m_environment.systemInfo.deviceIdentifier;
        if (!deviceId)
            deviceId = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
        identity.anonymousId = deviceId;
        identity.distinctID = MetricPostInstance::addPrefixToDeviceId(*deviceId);
        // Ahead of the first event; nobody waits for the disk.
        onStore([this, identity](Store &) {
            MetricPostPersistence::saveIdentity(identity, m_name, *m_environment.userDefaults);
        });
    }
    m_readWriteLock.write([&] {
        m_identity = identity;
        m_timedEvents = MetricPostPersistence::loadTimedEvents(m_name, suite);
        m_superProperties = MetricPostPersistence::loadSuperProperties(m_name, suite);
    });
    if (MetricPostPersistence::loadOptOutStatusFlag(m_name, suite).value_or(false))
        m_optedOut = true;
}

void InstanceCore::onStore(std::function<void(Store &)> work)
{
    m_trackingQueue.async([this, work = std::move(work)] {
        if (m_store)
            work(*m_store);
    });
}

void InstanceCore::track(const QString &event, const Properties &properties)
{
    if (hasOptedOutTracking())
        return;
    m_trackingQueue.async([this, event, properties, epochInterval = m_environment.now()] {
        // The user may have opted out since.
        if (!m_store || hasOptedOutTracking())
            return;
        MetricPostIdentity identity;
        Properties timedEvents;
        Properties superProperties;
        m_readWriteLock.read([&] {
            identity = m_identity;
            timedEvents = m_timedEvents;
            superProperties = m_superProperties;
        });
        timedEvents = m_store->trackInstance.track(event, properties, timedEvents, superProperties,
                                                   identity, epochInterval);
        m_readWriteLock.write([&] { m_timedEvents = timedEvents; });
    });
}

void InstanceCore::changeTimedEvents(std::function<Properties(const Properties &)> change)
{
    if (hasOptedOutTracking())
        return;
    onStore([this, change = std::move(change)](Store &) {
        const Properties changed = change(timedEvents());
        m_readWriteLock.write([&] { m_timedEvents = changed; });
        MetricPostPersistence::saveTimedEvents(changed, m_name, *m_environment.userDefaults);
    });
}

void InstanceCore::time(const QString &event)
{
    changeTimedEvents([event, startTime = m_environment.now()](const Properties &timedEvents) {
        return Track::time(event, timedEvents, startTime);
    });
}

void InstanceCore::clearTimedEvent(const QString &event)
{
    changeTimedEvents([event](const Properties &timedEvents) {
        return Track::clearTimedEvent(event, timedEvents);
    });
}

void InstanceCore::clearTimedEvents()
{
    changeTimedEvents(Track::clearTimedEvents);
}

void InstanceCore::changeSuperProperties(
    std::function<Properties(Store &, const Properties &)> change)
{
    onStore([this, change = std::move(change)](Store &store) {
        const Properties changed = change(store, superProperties());
        m_readWriteLock.write([&] { m_superProperties = changed; });
        MetricPostPersistence::saveSuperProperties(changed, m_name, *m_environment.userDefaults);
    });
}

void InstanceCore::registerSuperProperties(const Properties &properties)
{
    changeSuperProperties([properties](Store &store, const Properties &superProperties) {
        return store.trackInstance.registerSuperProperties(properties, superProperties);
    });
}

void InstanceCore::registerSuperPropertiesOnce(const Properties &properties,
                                               const std::optional<MetricPostType> &defaultValue)
{
    changeSuperProperties(
        [properties, defaultValue](Store &store, const Properties &superProperties) {
            return store.trackInstance.registerSuperPropertiesOnce(properties, superProperties,
                                                                   defaultValue);
        });
}

void InstanceCore::unregisterSuperProperty(const QString &propertyName)
{
    changeSuperProperties([propertyName](Store &, const Properties &superProperties) {
        return Track::unregisterSuperProperty(propertyName, superProperties);
    });
}

void InstanceCore::clearSuperProperties()
{
    changeSuperProperties([](Store &, const Properties &superProperties) {
        return Track::clearSuperProperties(superProperties);
    });
}

void InstanceCore::flush(bool performFullFlush, std::function<void()> completion)
{
    if (hasOptedOutTracking()) {
        if (completion)
            runOnMainQueue(std::move(completion));
        return;
    }
    // By way of the tracking queue, behind everything that was tracked before; from there to the
    // network queue, which loads at its turn. Loading any earlier would load rows that a flush
    // under way is about to deliver, and send them twice.
    m_trackingQueue.async([this, performFullFlush, completion = std::move(completion)] {
        m_networkQueue.async([this, performFullFlush, completion] {
            deliver(performFullFlush);
            if (completion)
                runOnMainQueue(completion);
        });
    });
}

// On the network queue.
void InstanceCore::deliver(bool performFullFlush)
{
    if (m_flushInstance.serverURL().isEmpty())
        return;
    ProxyServerResource proxy;
    if (m_options.proxyServerConfig && m_options.proxyServerConfig->delegate)
        proxy = m_options.proxyServerConfig->delegate->resourceForProxyServer(m_name);
    const int batchSize = performFullFlush ? MPDB::allRows : m_flushInstance.flushBatchSize();
    for (const FlushType type : allFlushTypes) {
        if (m_flushInstance.flushRequest().requestNotAllowed())
            return;
        QList<Properties> records;
        m_trackingQueue.sync([&] {
            if (m_store) {
                records = m_store->persistence.loadEntitiesInBatch(
                    persistenceType(type), batchSize, false, !trackAutomaticEventsEnabled());
            }
        });
        m_flushInstance.flushQueue(records, type, proxy.headers, proxy.queryItems);
    }
}

void InstanceCore::flushSuccess(FlushType type, const QList<qint32> &ids)
{
    onStore([type, ids](Store &store) {
        store.persistence.removeEntitiesInBatch(persistenceType(type), ids);
    });
}

void InstanceCore::optOutTracking()
{
    m_optedOut = true;
    MetricPostPersistence::saveOptOutStatusFlag(true, m_name, *m_environment.userDefaults);
    onStore([](Store &store) { store.persistence.resetEntities(); });
}

void InstanceCore::optInTracking()
{
    m_optedOut = m_environment.doNotTrack;
    MetricPostPersistence::saveOptOutStatusFlag(false, m_name, *m_environment.userDefaults);
}

bool InstanceCore::hasOptedOutTracking() const
{
    return m_optedOut;
}

MetricPostIdentity InstanceCore::identity() const
{
    return m_readWriteLock.read([this] { return m_identity; });
}

Properties InstanceCore::superProperties() const
{
    return m_readWriteLock.read([this] { return m_superProperties; });
}

Properties InstanceCore::timedEvents() const
{
    return m_readWriteLock.read([this] { return m_timedEvents; });
}

void InstanceCore::setLoggingEnabled(bool enabled)
{
    m_loggingEnabled = enabled;
    if (enabled) {
        MetricPostLogger::addPrintLogging();
        for (const MetricPostLogLevel level : allLogLevels)
            MetricPostLogger::enableLevel(level);
        MetricPostLogger::info([] { return QStringLiteral("MetricPostLogging Enabled"); });
    } else {
        MetricPostLogger::info([] { return QStringLiteral("MetricPostLogging Disabled"); });
        for (const MetricPostLogLevel level : allLogLevels)
            MetricPostLogger::disableLevel(level);
        MetricPostLogger::removePrintLogging();
    }
}

void InstanceCore::waitUntilStored()
{
    m_trackingQueue.sync([] {});
}

bool InstanceCore::shutdown(std::chrono::milliseconds limit)
{
    bool finished = true;
    std::call_once(m_shutdownOnce, [&] {
        using Clock = std::chrono::steady_clock;
        using std::chrono::milliseconds;
        const auto start = Clock::now();
        const auto left = [&](milliseconds share) {
            return std::max(milliseconds(0),
                            share - std::chrono::duration_cast<milliseconds>(Clock::now() - start));
        };

        m_environment.applicationState->removeListener(m_applicationListener);
        m_flushInstance.stopFlushTimer();
        m_networkQueue.close(SerialQueue::Closing::DropPending);
        if (!m_networkQueue.waitUntilFinished(limit / 2)) {
            m_flushInstance.flushRequest().cancel();
            m_networkQueue.waitUntilFinished(left(limit * 7 / 10));
        }
        m_trackingQueue.async([this] { m_store.reset(); });
        m_trackingQueue.close(SerialQueue::Closing::RunPending);
        finished = m_trackingQueue.waitUntilFinished(left(limit * 9 / 10));
        if (!finished) {
            m_stop.request_stop();
            finished = m_trackingQueue.waitUntilFinished(left(limit));
        }
    });
    return finished;
}

} // namespace metricpost
