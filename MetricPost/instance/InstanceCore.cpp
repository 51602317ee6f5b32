// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "InstanceCore.h"

#include "AutomaticProperties.h"
#include "InstanceStore.h"
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

// What a value holds in memory, roughly.
qint64 approximateBytes(const MetricPostType &value)
{
    qint64 bytes = qint64(sizeof(MetricPostType));
    if (const auto *text = value.get<QString>()) {
        bytes += text->size() * qint64(sizeof(QChar));
    } else if (const auto *list = value.get<ValueList>()) {
        for (const MetricPostType &element : *list)
            bytes += approximateBytes(element);
    } else if (const auto *dictionary = value.get<Properties>()) {
        for (auto entry = dictionary->cbegin(); entry != dictionary->cend(); ++entry)
            bytes += entry.key().size() * qint64(sizeof(QChar)) + approximateBytes(entry.value());
    }
    return bytes;
}

constexpr std::array allLogLevels{MetricPostLogLevel::debug, MetricPostLogLevel::info,
                                  MetricPostLogLevel::warning, MetricPostLogLevel::error};

} // namespace

InstanceCore::InstanceCore(const MetricPostOptions &options, const Environment &environment)
    : m_options(options)
    , m_name(options.instanceName.value_or(options.token))
    , m_environment(environment)
    , m_trackAutomaticEventsEnabled(options.trackAutomaticEvents)
    , m_optedOut(environment.doNotTrack)
    , m_trackingQueue(queueLabel(options.token, QStringLiteral("tracking")),
                      [this] { afterGroup(); }, {options.maxQueuedEvents, options.maxQueuedBytes})
    , m_networkQueue(queueLabel(options.token, QStringLiteral("network")))
    , m_flushInstance(initialServerURL(options, environment), options.useGzipCompression,
                      {environment.transport, environment.now, environment.random})
{
    if (m_environment.cachesFolder) {
        m_uploadClaim.emplace(
            MetricPostPersistence::uploadClaimPath(*m_environment.cachesFolder, m_name));
    }
    // Without tracking there is no file either.
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
    setupListeners();
    unarchive();
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
    // A task that the limit left running uses the members, each queue the other one too.
    constexpr std::chrono::hours noLimit{24};
    m_networkQueue.waitUntilFinished(noLimit);
    m_trackingQueue.waitUntilFinished(noLimit);
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
        // On the tracking queue, so that no caller waits for the disk, and before the first event.
        // When another process has stored an identity meanwhile, that one holds.
        onStore([this, identity](Store &) {
            const MetricPostIdentity stored = MetricPostPersistence::saveIdentityIfAbsent(
                identity, m_name, *m_environment.userDefaults);
            if (!stored.distinctID.isEmpty())
                m_readWriteLock.write([&] { m_identity = stored; });
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

// The tracking queue has run everything that waited.
void InstanceCore::afterGroup()
{
    if (!m_store)
        return;
    m_store->persistence.commit();
    m_droppedRows = m_store->persistence.droppedRows();
}

// On the tracking queue. The user may have opted out since the event was handed over, also in
// another process of the same instance.
bool InstanceCore::mayRecord(Store &store)
{
    if (m_optedOut)
        return false;
    if (!MetricPostPersistence::loadOptOutStatusFlag(m_name, *m_environment.userDefaults)
             .value_or(false)) {
        return true;
    }
    m_optedOut = true;
    store.persistence.resetEntities();
    return false;
}

void InstanceCore::track(const QString &event, const Properties &properties)
{
    if (hasOptedOutTracking())
        return;
    const qint64 bytes = approximateBytes(event) + approximateBytes(properties);
    m_trackingQueue.asyncDroppable(
        bytes, [this, event, properties, epochInterval = m_environment.now()] {
            if (!m_store || !mayRecord(*m_store))
                return;
            MetricPostIdentity identity;
            Properties timedEvents;
            Properties superProperties;
            m_readWriteLock.read([&] {
                identity = m_identity;
                timedEvents = m_timedEvents;
                superProperties = m_superProperties;
            });
            timedEvents = m_store->trackInstance.track(event, properties, timedEvents,
                                                       superProperties, identity, epochInterval);
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

void InstanceCore::optOutTracking()
{
    m_optedOut = true;
    MetricPostPersistence::saveOptOutStatusFlag(true, m_name, *m_environment.userDefaults);
    onStore([](Store &store) { store.persistence.resetEntities(); });
}

void InstanceCore::optInTracking()
{
    // In this order, so that no event finds the old status.
    MetricPostPersistence::saveOptOutStatusFlag(false, m_name, *m_environment.userDefaults);
    m_optedOut = m_environment.doNotTrack;
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
    m_trackingQueue.sync([this] { afterGroup(); });
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
