// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostIdentity.h"
#include "MetricPost/MetricPostType.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace metricpost
{

enum class LegacyArchiveType { events, people, groups, properties, optOutStatus };

/// The files in which earlier versions kept what is now in the database and the user defaults.
/// One file for each LegacyArchiveType, named "metricpost-<instance name>-<type>", each one
/// value in the layout of KeyedArchive: events, people and groups an array of records;
/// properties a dictionary with any of "distinctId", "peopleDistinctId", "anonymousId",
/// "userId", "alias", "hadPersistedDistinctId", "superProperties" and "timedEvents";
/// optOutStatus a Boolean. Used by one thread at a time.
class LegacyArchive
{
public:
    struct StoredProperties {
        Properties superProperties;
        Properties timedEvents;
        MetricPostIdentity identity;
    };
    struct Contents {
        QList<Properties> events;
        QList<Properties> people;
        QList<Properties> groups;
        std::optional<StoredProperties> properties;
        std::optional<bool> optOutStatus;
    };

    LegacyArchive(std::optional<QString> folder, QString instanceName);

    bool exists() const;

    /// Reads every file that is there. A file that cannot be read is logged and counts as empty.
    Contents unarchiveFromLegacy() const;

    /// Removes the files, including those that could not be read.
    void remove() const;

private:
    std::optional<QString> path(LegacyArchiveType type) const;
    MetricPostType unarchive(LegacyArchiveType type) const;
    QList<Properties> records(LegacyArchiveType type) const;

    const std::optional<QString> m_folder;
    const QString m_instanceName;
};

} // namespace metricpost
