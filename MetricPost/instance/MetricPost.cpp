// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MetricPost/MetricPost.h"

#include "AutomaticProperties.h"
#include "MetricPost/MetricPostLogger.h"
#include "MetricPostManager.h"

namespace metricpost
{

namespace
{

MetricPostManager &manager()
{
    return MetricPostManager::sharedInstance();
}

} // namespace

void MetricPost::setApplicationFacts(const ApplicationFacts &facts)
{
    AutomaticProperties::compute(manager().environment().systemInfo, facts);
}

MetricPost::InstancePtr MetricPost::initialize(const MetricPostOptions &options)
{
    return manager().initialize(options);
}

MetricPost::InstancePtr
MetricPost::initialize(const QString &token, Seconds flushInterval,
                       const std::optional<QString> &instanceName, bool optOutTrackingByDefault,
                       bool useUniqueDistinctId, const std::optional<Properties> &superProperties,
                       const std::optional<QString> &serverURL, bool useGzipCompression)
{
    MetricPostOptions options;
    options.token = token;
    options.flushInterval = flushInterval;
    options.instanceName = instanceName;
    options.optOutTrackingByDefault = optOutTrackingByDefault;
    options.useUniqueDistinctId = useUniqueDistinctId;
    options.superProperties = superProperties;
    options.serverURL = serverURL;
    options.useGzipCompression = useGzipCompression;
    return initialize(options);
}

MetricPost::InstancePtr MetricPost::getInstance(const QString &name)
{
    return manager().getInstance(name);
}

MetricPost::InstancePtr MetricPost::mainInstance()
{
    return mainInstance(manager());
}

MetricPost::InstancePtr MetricPost::mainInstance(MetricPostManager &manager)
{
    InstancePtr instance = manager.mainInstance();
    if (!instance) {
        QString message = QStringLiteral(
            "You have to call initialize(token:trackAutomaticEvents:) before calling the main "
            "instance, or define a new main instance if removing the main one");
        MetricPostLogger::error([&] { return message; });
        qFatal("%s", qPrintable(message));
    }
    return instance;
}

MetricPost::InstancePtr MetricPost::safeMainInstance()
{
    return safeMainInstance(manager());
}

MetricPost::InstancePtr MetricPost::safeMainInstance(MetricPostManager &manager)
{
    InstancePtr instance = manager.mainInstance();
    if (!instance) {
        MetricPostLogger::warn([] {
            return QStringLiteral("WARNING: MetricPost main instance is NOT initialized. Call "
                                  "MetricPost.initialize(...) first.");
        });
    }
    return instance;
}

void MetricPost::setMainInstance(const QString &name)
{
    manager().setMainInstance(name);
}

void MetricPost::removeInstance(const QString &name)
{
    manager().removeInstance(name);
}

void MetricPost::applicationDidBecomeActive()
{
    manager().environment().applicationState->applicationDidBecomeActive();
}

void MetricPost::applicationWillResignActive()
{
    manager().environment().applicationState->applicationWillResignActive();
}

void MetricPost::shutdown()
{
    constexpr std::chrono::seconds limit{1};
    manager().shutdown(limit);
}

} // namespace metricpost
