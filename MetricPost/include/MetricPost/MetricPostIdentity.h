// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <optional>

namespace metricpost
{

/// The user that an instance reports about. Read and written as one value.
struct MetricPostIdentity {
    QString distinctID;
    std::optional<QString> peopleDistinctID;
    std::optional<QString> anonymousId;
    std::optional<QString> userId;
    std::optional<QString> alias;
    std::optional<bool> hadPersistedDistinctId;

    bool operator==(const MetricPostIdentity &) const = default;
};

} // namespace metricpost
