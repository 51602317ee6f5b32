// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/ApplicationFacts.h"
#include "MetricPost/MetricPostType.h"
#include "SystemInfo.h"

namespace metricpost
{

/// The device and application facts that every event and profile update carries. Facts that are
/// not known are left out. Any thread.
class AutomaticProperties
{
public:
    static Properties eventProperties(const SystemInfo &system, const ApplicationFacts &facts);
    static Properties profileProperties(const SystemInfo &system, const ApplicationFacts &facts);

    /// Computes the two dictionaries below, which are the process's and empty until then.
    static void compute(const SystemInfo &system, const ApplicationFacts &facts);
    /// Computes them unless that has been done.
    static void computeOnce(const SystemInfo &system);

    static Properties properties();
    static Properties peopleProperties();
};

} // namespace metricpost
