// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <optional>

namespace metricpost
{

/// Who the events of an instance are about; read and written as one.
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
