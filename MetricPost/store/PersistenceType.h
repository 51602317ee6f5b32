// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <array>

namespace metricpost
{

/// The kinds of queued record; each has its own table.
enum class PersistenceType { events, people, groups };

inline constexpr std::array allPersistenceTypes{PersistenceType::events, PersistenceType::people,
                                                PersistenceType::groups};

/// "events", "people" or "groups", as in the names of the tables.
inline QString rawValue(PersistenceType type)
{
    switch (type) {
    case PersistenceType::events:
        return QStringLiteral("events");
    case PersistenceType::people:
        return QStringLiteral("people");
    case PersistenceType::groups:
        break;
    }
    return QStringLiteral("groups");
}

struct PersistenceConstant {
    /// A row with this flag is a profile update of a user who is not identified yet. It is not
    /// sent until identification turns the flag off.
    static constexpr bool unIdentifiedFlag = true;
};

} // namespace metricpost
