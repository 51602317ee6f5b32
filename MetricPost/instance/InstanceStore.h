// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "InstanceCore.h"

namespace metricpost
{

/// What exists only on the tracking queue. It is opened there, so that no caller waits for a disk.
struct InstanceCore::Store {
    Store(const MetricPostOptions &options, const QString &name, const Environment &environment,
          SerialQueue &trackingQueue, std::stop_token stop)
        : persistence(name, {.now = environment.now,
                             .folder = environment.cachesFolder,
                             .userDefaults = environment.userDefaults,
                             .legacyArchiveFolder = environment.legacyArchiveFolder,
                             .stop = std::move(stop),
                             .limits = {.maxRows = options.maxStoredRecords,
                                        .maxBytes = options.maxStoredBytes}})
        , sessionMetadata(trackingQueue, environment.now, environment.random)
        , trackInstance(options.token, name, sessionMetadata, persistence, environment.userDefaults)
    {
        persistence.setGrouping(true);
    }

    MetricPostPersistence persistence;
    SessionMetadata sessionMetadata;
    Track trackInstance;
};

} // namespace metricpost
