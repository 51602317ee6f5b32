// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <array>

namespace metricpost
{

/// The service's endpoints, in the order in which a flush serves them.
enum class FlushType { events, people, groups };

inline constexpr std::array allFlushTypes{FlushType::events, FlushType::people, FlushType::groups};

/// The endpoint's path.
inline QString rawValue(FlushType type)
{
    switch (type) {
    case FlushType::events:
        return QStringLiteral("/track/");
    case FlushType::people:
        return QStringLiteral("/engage/");
    case FlushType::groups:
        break;
    }
    return QStringLiteral("/groups/");
}

} // namespace metricpost
