// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace metricpost
{

/// Fixed values of the analytics service's protocol. Times are in seconds.
struct APIConstants {
    static constexpr int maxBatchSize = 50;
    static constexpr int flushSize = 1000;
    static constexpr double minRetryBackoff = 60.0;
    static constexpr double maxRetryBackoff = 600.0;
    static constexpr int failuresTillBackoff = 2;
};

} // namespace metricpost
