// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MetricPost/MetricPostInstance.h"

#include "InstanceCore.h"

#include <thread>

namespace metricpost
{

MetricPostInstance::MetricPostInstance(const MetricPostOptions &options,
                                       const Environment &environment)
    : m_core(std::make_unique<InstanceCore>(options, environment))
{
}

MetricPostInstance::~MetricPostInstance()
{
    // A completion may have held the last reference. A queue cannot wait for its own thread to end.
    if (m_core->isOwnThread())
        std::thread([core = std::move(m_core)]() mutable { core.reset(); }).detach();
}

const QString &MetricPostInstance::apiToken() const
{
    return m_core->options().token;
}

const QString &MetricPostInstance::name() const
{
    return m_core->name();
}

const MetricPostOptions &MetricPostInstance::options() const
{
    return m_core->options();
}

void MetricPostInstance::track(const QString &event, const Properties &properties)
{
    m_core->track(event, properties);
}

void MetricPostInstance::time(const QString &event)
{
    m_core->time(event);
}

void MetricPostInstance::clearTimedEvent(const QString &event)
{
    m_core->clearTimedEvent(event);
}

void MetricPostInstance::clearTimedEvents()
{
    m_core->clearTimedEvents();
}

void MetricPostInstance::registerSuperProperties(const Properties &properties)
{
    m_core->registerSuperProperties(properties);
}

void MetricPostInstance::registerSuperPropertiesOnce(
    const Properties &properties, const std::optional<MetricPostType> &defaultValue)
{
    m_core->registerSuperPropertiesOnce(properties, defaultValue);
}

void MetricPostInstance::unregisterSuperProperty(const QString &propertyName)
{
    m_core->unregisterSuperProperty(propertyName);
}

void MetricPostInstance::clearSuperProperties()
{
    m_core->clearSuperProperties();
}

void MetricPostInstance::flush(bool performFullFlush, std::function<void()> completion)
{
    m_core->flush(performFullFlush, std::move(completion));
}

void MetricPostInstance::optOutTracking()
{
    m_core->optOutTracking();
}

void MetricPostInstance::optInTracking()
{
    m_core->optInTracking();
}

bool MetricPostInstance::hasOptedOutTracking() const
{
    return m_core->hasOptedOutTracking();
}

QString MetricPostInstance::distinctId() const
{
    return identity().distinctID;
}

std::optional<QString> MetricPostInstance::anonymousId() const
{
    return identity().anonymousId;
}

MetricPostIdentity MetricPostInstance::identity() const
{
    return m_core->identity();
}

Properties MetricPostInstance::superProperties() const
{
    return m_core->superProperties();
}

Properties MetricPostInstance::timedEvents() const
{
    return m_core->timedEvents();
}

QString MetricPostInstance::addPrefixToDeviceId(const QString &deviceId)
{
    return deviceId.isEmpty() ? QString() : QStringLiteral("$device:") + deviceId;
}

bool MetricPostInstance::trackAutomaticEventsEnabled() const
{
    return m_core->trackAutomaticEventsEnabled();
}

void MetricPostInstance::setTrackAutomaticEventsEnabled(bool enabled)
{
    m_core->setTrackAutomaticEventsEnabled(enabled);
}

QString MetricPostInstance::serverURL() const
{
    return m_core->flushInstance().serverURL();
}

void MetricPostInstance::setServerURL(const QString &url)
{
    m_core->flushInstance().setServerURL(url);
}

Seconds MetricPostInstance::flushInterval() const
{
    return m_core->flushInstance().flushInterval();
}

void MetricPostInstance::setFlushInterval(Seconds interval)
{
    m_core->flushInstance().setFlushInterval(interval);
}

int MetricPostInstance::flushBatchSize() const
{
    return m_core->flushInstance().flushBatchSize();
}

void MetricPostInstance::setFlushBatchSize(int size)
{
    m_core->flushInstance().setFlushBatchSize(size);
}

bool MetricPostInstance::flushOnBackground() const
{
    return m_core->flushInstance().flushOnBackground();
}

void MetricPostInstance::setFlushOnBackground(bool flush)
{
    m_core->flushInstance().setFlushOnBackground(flush);
}

bool MetricPostInstance::useIPAddressForGeoLocation() const
{
    return m_core->flushInstance().useIPAddressForGeoLocation();
}

void MetricPostInstance::setUseIPAddressForGeoLocation(bool use)
{
    m_core->flushInstance().setUseIPAddressForGeoLocation(use);
}

qint64 MetricPostInstance::droppedRecords() const
{
    return m_core->droppedRecords();
}

qint64 MetricPostInstance::refusedRecords() const
{
    return m_core->refusedRecords();
}

bool MetricPostInstance::loggingEnabled() const
{
    return m_core->loggingEnabled();
}

void MetricPostInstance::setLoggingEnabled(bool enabled)
{
    m_core->setLoggingEnabled(enabled);
}

QString MetricPostInstance::debugDescription() const
{
    return QStringLiteral("MetricPost(\n    Token: ") + apiToken() +
           QStringLiteral(",\n    Distinct Id: ") + distinctId() + QStringLiteral("\n)");
}

void MetricPostInstance::waitUntilStored()
{
    m_core->waitUntilStored();
}

bool MetricPostInstance::shutdown(std::chrono::milliseconds limit)
{
    return m_core->shutdown(limit);
}

} // namespace metricpost
