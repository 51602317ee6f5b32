// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <optional>

namespace metricpost
{

/// What the application reports about itself. An event leaves out the facts that are not set.
struct ApplicationFacts {
    /// Size of the main screen, in points.
    std::optional<double> screenHeight;
    std::optional<double> screenWidth;
    std::optional<QString> bundleVersion;
    std::optional<QString> bundleShortVersion;
};

} // namespace metricpost
