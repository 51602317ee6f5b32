// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPostType.h"
#include "SystemInfo.h"

#include <QString>

#include <optional>

namespace metricpost
{

/// What only the application knows of itself.
struct ApplicationFacts {
    /// Of the main screen, in points.
    std::optional<double> screenHeight;
    std::optional<double> screenWidth;
    std::optional<QString> bundleVersion;
    std::optional<QString> bundleShortVersion;
};

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
