// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>

namespace metricpost
{

/// Fixed values of the analytics service's protocol.
struct APIConstants {
    static constexpr int maxBatchSize = 50;
    static constexpr int flushSize = 1000;
    static constexpr std::chrono::seconds minRetryBackoff{60};
    static constexpr std::chrono::seconds maxRetryBackoff{600};
    static constexpr int failuresTillBackoff = 2;
};

} // namespace metricpost
