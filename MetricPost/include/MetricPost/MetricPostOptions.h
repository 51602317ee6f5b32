// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostType.h"
#include "MetricPost/ProxyServerConfig.h"
#include "MetricPost/Seconds.h"

#include <QString>

#include <optional>

namespace metricpost
{

/// The settings of an instance.
struct MetricPostOptions {
    QString token;
    /// 0 leaves flushing to explicit calls.
    Seconds flushInterval{60};
    /// The token when there is none.
    std::optional<QString> instanceName;
    bool trackAutomaticEvents = false;
    bool optOutTrackingByDefault = false;
    bool useUniqueDistinctId = false;
    std::optional<Properties> superProperties;
    /// The environment's default server when there is none.
    std::optional<QString> serverURL;
    std::optional<ProxyServerConfig> proxyServerConfig;
    bool useGzipCompression = true;
    bool featureFlagsEnabled = false;
    Properties featureFlagsContext;
    /// Bounds of the store on disk, for each kind of record and for the whole file. Beyond them
    /// the oldest records are dropped.
    int maxStoredRecords = 1'000'000;
    qint64 maxStoredBytes = qint64(256) * 1024 * 1024;
    /// Bounds of what waits in memory for the store. Beyond them the oldest events are dropped.
    qint64 maxQueuedEvents = 100'000;
    qint64 maxQueuedBytes = qint64(64) * 1024 * 1024;
};

} // namespace metricpost
