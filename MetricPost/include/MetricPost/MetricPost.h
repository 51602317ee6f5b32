// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/ApplicationFacts.h"
#include "MetricPost/MetricPostInstance.h"
#include "MetricPost/MetricPostOptions.h"
#include "MetricPost/MetricPostType.h"

#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace metricpost
{

class MetricPostManager;

/// The entry points: the instances of the shared registry. Any thread.
class MetricPost
{
public:
    using InstancePtr = std::shared_ptr<MetricPostInstance>;

    /// Sets the facts that only the application knows. Call it before `initialize`, so that the
    /// first event has it.
    static void setApplicationFacts(const ApplicationFacts &facts);

    /// Creates the instance of that name, or returns the one that exists as it was first
    /// configured. It becomes the main instance.
    static InstancePtr initialize(const MetricPostOptions &options);
    /// The older form. Unlike the options it does not compress unless told to.
    static InstancePtr initialize(const QString &token, Seconds flushInterval = Seconds(60),
                                  const std::optional<QString> &instanceName = {},
                                  bool optOutTrackingByDefault = false,
                                  bool useUniqueDistinctId = false,
                                  const std::optional<Properties> &superProperties = {},
                                  const std::optional<QString> &serverURL = {},
                                  bool useGzipCompression = false);

    /// Empty, with a line in the log, when no instance has that name.
    static InstancePtr getInstance(const QString &name);
    /// Stops the program when there is none.
    static InstancePtr mainInstance();
    /// Empty, with a line in the log, when there is none.
    static InstancePtr safeMainInstance();
    static void setMainInstance(const QString &name);
    static void removeInstance(const QString &name);

    /// The application reports its active state here: it starts and stops the flush timers.
    static void applicationDidBecomeActive();
    static void applicationWillResignActive();

    /// Call it when the application quits; it takes at most one second, whatever network and
    /// disk do. Events that were not sent are sent on a later run.
    static void shutdown();

    // The same, of a registry other than the shared one.
    static InstancePtr mainInstance(MetricPostManager &manager);
    static InstancePtr safeMainInstance(MetricPostManager &manager);
};

} // namespace metricpost
