// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MPDB.h"
#include "MetricPost/MetricPostIdentity.h"
#include "MetricPost/MetricPostType.h"
#include "UserDefaults.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace metricpost
{

struct MetricPostUserDefaultsKeys {
    static constexpr QLatin1String suiteName{"MetricPost"};
    /// A key is the prefix, the instance's name and one of the names below, joined by "-".
    static constexpr QLatin1String prefix{"metricpost"};
    static constexpr QLatin1String optOutStatus{"OptOutStatus"};
    static constexpr QLatin1String timedEvents{"timedEvents"};
    static constexpr QLatin1String superProperties{"superProperties"};
    static constexpr QLatin1String distinctID{"MPDistinctID"};
    static constexpr QLatin1String peopleDistinctID{"MPPeopleDistinctID"};
    static constexpr QLatin1String anonymousId{"MPAnonymousId"};
    static constexpr QLatin1String userId{"MPUserId"};
    static constexpr QLatin1String alias{"MPAlias"};
    static constexpr QLatin1String hadPersistedDistinctId{"MPHadPersistedDistinctId"};
    static constexpr QLatin1String flags{"MPFlags"};
};

/// What the rest of the library sees of the disk: the queues of records in the database and the
/// instance's small values in the user defaults.
///
/// The queues belong to the instance's tracking queue. The static operations may be called from
/// any thread.
class MetricPostPersistence
{
public:
    /// What the disk side depends on.
    struct Surroundings {
        /// Seconds since 1970. Any thread.
        std::function<double()> now = {};
        /// The caches folder; without one no database is opened.
        std::optional<QString> folder = {};
        std::shared_ptr<UserDefaults> userDefaults = {};
        std::optional<QString> legacyArchiveFolder = {};
        /// Gives up waits for another process's lock.
        std::stop_token stop = {};
        MPDB::Limits limits = {};
    };

    /// Opens the database.
    MetricPostPersistence(const QString &instanceName, const Surroundings &surroundings);

    void saveEntity(const Properties &entity, PersistenceType type, bool flag = false);
    void saveEntities(const QList<Properties> &entities, PersistenceType type, bool flag = false);

    /// The oldest records, oldest first, each with its "id". Profile records carry the current
    /// distinct id, whichever was current when they were queued.
    QList<Properties> loadEntitiesInBatch(PersistenceType type, int batchSize = MPDB::allRows,
                                          bool flag = false, bool excludeAutomaticEvents = false);
    /// False when the records are still there.
    bool removeEntitiesInBatch(PersistenceType type, const QList<qint32> &ids);
    /// Keeps records that the service refuses out of later batches. False when that failed.
    bool setAside(PersistenceType type, const QList<qint32> &ids);

    /// See MPDB.
    void setGrouping(bool grouping) { m_mpdb.setGrouping(grouping); }
    void commit() { m_mpdb.commit(); }
    void shrink() { m_mpdb.shrink(); }
    qint64 droppedRows() const { return m_mpdb.droppedRows(); }

    /// The file whose lock a process holds while it sends rows, so that no other sends them too.
    static QString uploadClaimPath(const QString &folder, const QString &instanceName);

    /// Releases the profile updates that waited for the user to be identified.
    void identifyPeople();
    void resetEntities();
    void closeDB();

    /// Moves the files of the older archive format into the database and the user defaults.
    void migrate();
    static bool needMigration(const QString &instanceName,
                              const std::optional<QString> &legacyArchiveFolder);

    static void saveOptOutStatusFlag(bool value, const QString &instanceName, UserDefaults &suite);
    static std::optional<bool> loadOptOutStatusFlag(const QString &instanceName,
                                                    const UserDefaults &suite);
    static void saveTimedEvents(const Properties &timedEvents, const QString &instanceName,
                                UserDefaults &suite);
    static Properties loadTimedEvents(const QString &instanceName, const UserDefaults &suite);
    static void saveSuperProperties(const Properties &superProperties, const QString &instanceName,
                                    UserDefaults &suite);
    static Properties loadSuperProperties(const QString &instanceName, const UserDefaults &suite);
    static void saveFlags(const Properties &flags, const QString &instanceName,
                          UserDefaults &suite);
    static Properties loadFlags(const QString &instanceName, const UserDefaults &suite);
    static void saveIdentity(const MetricPostIdentity &identity, const QString &instanceName,
                             UserDefaults &suite);
    /// Saves the identity unless one is stored, by this or another process. Returns the stored one.
    static MetricPostIdentity saveIdentityIfAbsent(const MetricPostIdentity &identity,
                                                   const QString &instanceName,
                                                   UserDefaults &suite);
    static MetricPostIdentity loadIdentity(const QString &instanceName, const UserDefaults &suite);
    static void deleteMPUserDefaultsData(const QString &instanceName, UserDefaults &suite);

private:
    const QString m_instanceName;
    const std::shared_ptr<UserDefaults> m_userDefaults;
    const std::optional<QString> m_legacyArchiveFolder;
    MPDB m_mpdb;
};

} // namespace metricpost
