// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "Environment.h"
#include "MetricPost/MetricPostInstance.h"
#include "MetricPost/MetricPostOptions.h"
#include "ReadWriteLock.h"
#include "SerialQueue.h"

#include <QMap>
#include <QString>

#include <functional>
#include <memory>

namespace metricpost
{

/// The instances by name, and which of them is the main one. Any thread.
///
/// The dictionary is changed on the manager's queue, under its lock. The main instance is read
/// under the lock alone, because every tracked event asks for it.
class MetricPostManager
{
public:
    using InstancePtr = std::shared_ptr<MetricPostInstance>;

    explicit MetricPostManager(const Environment &environment);

    /// The process's registry, in the real environment.
    static MetricPostManager &sharedInstance();

    /// The instance of that name if there is one, which the options then do not change, or else
    /// a new one. It becomes the main instance.
    InstancePtr initialize(const MetricPostOptions &options);
    /// Empty, with a warning in the log, when there is none.
    InstancePtr getInstance(const QString &name);
    /// Empty when there is none.
    InstancePtr mainInstance() const;
    void setMainInstance(const QString &name);
    /// Removing the main instance leaves none.
    void removeInstance(const QString &name);

    /// Ends every instance's work; all of them together take at most `limit`.
    void shutdown(std::chrono::milliseconds limit);

    const Environment &environment() const { return m_environment; }

private:
    InstancePtr dequeueInstance(const QString &instanceName,
                                const std::function<InstancePtr()> &instanceCreation);

    const Environment m_environment;
    mutable ReadWriteLock m_lock{QStringLiteral("dratru.instance.manager.lock")};
    QMap<QString, InstancePtr> m_instances;
    InstancePtr m_mainInstance;
    SerialQueue m_instanceQueue{QStringLiteral("dratru.instance.manager.instance")};
};

} // namespace metricpost
