// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostType.h"
#include "MetricPost/ProxyServerConfig.h"

#include <QString>

#include <optional>

namespace metricpost
{

/// The settings of an instance.
struct MetricPostOptions {
    QString token;
    /// Seconds; 0 leaves flushing to explicit calls.
    double flushInterval = 60;
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
};

} // namespace metricpost
