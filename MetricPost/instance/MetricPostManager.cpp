// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MetricPostManager.h"

#include "MetricPost/MetricPostLogger.h"

#include <algorithm>
#include <thread>
#include <vector>

namespace metricpost
{

namespace
{

void logNoSuchInstance(const QString &name)
{
    MetricPostLogger::warn([&] { return QStringLiteral("no such instance: ") + name; });
}

} // namespace

MetricPostManager::MetricPostManager(const Environment &environment)
    : m_environment(environment)
{
}

MetricPostManager &MetricPostManager::sharedInstance()
{
    // Never destroyed: at the end of the process a slow disk must not hold up its threads.
    static auto *const shared = new MetricPostManager(Environment::standard());
    return *shared;
}

MetricPostManager::InstancePtr MetricPostManager::initialize(const MetricPostOptions &options)
{
    return dequeueInstance(options.instanceName.value_or(options.token), [&] {
        return std::make_shared<MetricPostInstance>(options, m_environment);
    });
}

MetricPostManager::InstancePtr
MetricPostManager::dequeueInstance(const QString &instanceName,
                                   const std::function<InstancePtr()> &instanceCreation)
{
    InstancePtr instance;
    m_instanceQueue.sync([&] {
        instance = m_lock.read([&] { return m_instances.value(instanceName); });
        if (!instance)
            instance = instanceCreation();
        m_lock.write([&] {
            m_instances.insert(instanceName, instance);
            m_mainInstance = instance;
        });
    });
    return instance;
}

MetricPostManager::InstancePtr MetricPostManager::getInstance(const QString &name)
{
    InstancePtr instance;
    m_instanceQueue.sync([&] { instance = m_lock.read([&] { return m_instances.value(name); }); });
    if (!instance)
        logNoSuchInstance(name);
    return instance;
}

MetricPostManager::InstancePtr MetricPostManager::mainInstance() const
{
    return m_lock.read([this] { return m_mainInstance; });
}

void MetricPostManager::setMainInstance(const QString &name)
{
    bool known = false;
    m_instanceQueue.sync([&] {
        m_lock.write([&] {
            known = m_instances.contains(name);
            if (known)
                m_mainInstance = m_instances.value(name);
        });
    });
    if (!known)
        logNoSuchInstance(name);
}

void MetricPostManager::removeInstance(const QString &name)
{
    // Held beyond the lock: the last holder ends the instance's work, which takes its time.
    InstancePtr removed;
    m_instanceQueue.sync([&] {
        m_lock.write([&] {
            removed = m_instances.take(name);
            if (removed && removed == m_mainInstance)
                m_mainInstance.reset();
        });
    });
    if (!removed)
        logNoSuchInstance(name);
}

void MetricPostManager::shutdown(std::chrono::milliseconds limit)
{
    const auto instances = m_lock.read([this] { return m_instances.values(); });
    std::vector<std::thread> threads;
    for (const InstancePtr &instance : instances)
        threads.emplace_back([&instance, limit] { instance->shutdown(limit); });
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace metricpost
