// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MetricPostPersistence.h"

#include "JSONHandler.h"
#include "KeyedArchive.h"
#include "LegacyArchive.h"
#include "MetricPost/MetricPostLogger.h"

namespace metricpost
{

namespace
{

using Keys = MetricPostUserDefaultsKeys;

QString key(const QString &instanceName, QLatin1String name)
{
    return Keys::prefix + u'-' + instanceName + u'-' + name;
}

void saveArchived(const Properties &dictionary, QLatin1String name, QLatin1String what,
                  const QString &instanceName, UserDefaults &suite)
{
    if (const auto data = KeyedArchive::archive(dictionary)) {
        suite.setValues({{key(instanceName, name), *data}});
    } else {
        MetricPostLogger::error([&] { return QStringLiteral("Failed to archive ") + what; });
    }
}

Properties loadArchived(QLatin1String name, QLatin1String what, const QString &instanceName,
                        const UserDefaults &suite)
{
    const QVariant stored = suite.value(key(instanceName, name));
    if (!stored.isValid())
        return {};
    const auto value = KeyedArchive::unarchive(stored.toByteArray());
    if (const Properties *dictionary = value ? value->get<Properties>() : nullptr)
        return *dictionary;
    MetricPostLogger::error([&] { return QStringLiteral("Failed to unarchive ") + what; });
    return {};
}

template <class T> QVariant orInvalid(const std::optional<T> &value)
{
    return value ? QVariant(*value) : QVariant();
}

std::optional<QString> text(const QVariant &variant)
{
    return variant.isValid() ? std::optional(variant.toString()) : std::nullopt;
}

std::optional<bool> boolean(const QVariant &variant)
{
    return variant.isValid() ? std::optional(variant.toBool()) : std::nullopt;
}

QMap<QString, QVariant> valuesOf(const MetricPostIdentity &identity, const QString &instanceName)
{
    return {
        {key(instanceName, Keys::distinctID), identity.distinctID},
        {key(instanceName, Keys::peopleDistinctID), orInvalid(identity.peopleDistinctID)},
        {key(instanceName, Keys::anonymousId), orInvalid(identity.anonymousId)},
        {key(instanceName, Keys::userId), orInvalid(identity.userId)},
        {key(instanceName, Keys::alias), orInvalid(identity.alias)},
        {key(instanceName, Keys::hadPersistedDistinctId),
         orInvalid(identity.hadPersistedDistinctId)},
    };
}

bool isAutomatic(const Properties &record)
{
    const auto value = record.value(QStringLiteral("event"));
    const QString *name = value.get<QString>();
    return name && name->startsWith(u"$ae_");
}

} // namespace

MetricPostPersistence::MetricPostPersistence(const QString &instanceName,
                                             const Surroundings &surroundings)
    : m_instanceName(instanceName)
    , m_userDefaults(surroundings.userDefaults)
    , m_legacyArchiveFolder(surroundings.legacyArchiveFolder)
    , m_mpdb(instanceName, {.folder = surroundings.folder,
                            .now = surroundings.now,
                            .stop = surroundings.stop,
                            .limits = surroundings.limits})
{
}

void MetricPostPersistence::saveEntity(const Properties &entity, PersistenceType type, bool flag)
{
    if (const auto data = JSONHandler::serializeJSONObject(entity))
        m_mpdb.insertRow(type, *data, flag);
}

void MetricPostPersistence::saveEntities(const QList<Properties> &entities, PersistenceType type,
                                         bool flag)
{
    for (const Properties &entity : entities)
        saveEntity(entity, type, flag);
}

QList<Properties> MetricPostPersistence::loadEntitiesInBatch(PersistenceType type, int batchSize,
                                                             bool flag, bool excludeAutomaticEvents)
{
    QList<Properties> entities;
    int numRows = batchSize;
    while (true) {
        entities = m_mpdb.readRows(type, numRows, flag);
        const bool hasMore = entities.size() == numRows;
        if (excludeAutomaticEvents && type == PersistenceType::events)
            entities.removeIf(isAutomatic);
        if (!hasMore || entities.size() >= batchSize)
            break;
        // Records that stay behind must not hold up the others.
        numRows = numRows > MPDB::allRows / 2 ? MPDB::allRows : numRows * 2;
    }
    if (entities.size() > batchSize)
        entities.resize(batchSize);
    if (type == PersistenceType::people && !entities.isEmpty()) {
        const QString current = loadIdentity(m_instanceName, *m_userDefaults).distinctID;
        for (Properties &entity : entities)
            entity.insert(QStringLiteral("$distinct_id"), current);
    }
    return entities;
}

bool MetricPostPersistence::removeEntitiesInBatch(PersistenceType type, const QList<qint32> &ids)
{
    return m_mpdb.deleteRows(type, ids);
}

bool MetricPostPersistence::setAside(PersistenceType type, const QList<qint32> &ids)
{
    return m_mpdb.setAside(type, ids);
}

QString MetricPostPersistence::uploadClaimPath(const QString &folder, const QString &instanceName)
{
    return MPDB::path(folder, instanceName) + QStringLiteral("-upload");
}

void MetricPostPersistence::identifyPeople()
{
    m_mpdb.updateRowsFlag(PersistenceType::people, !PersistenceConstant::unIdentifiedFlag);
}

void MetricPostPersistence::resetEntities()
{
    for (const PersistenceType type : allPersistenceTypes)
        m_mpdb.deleteRows(type, {}, true);
}

void MetricPostPersistence::closeDB()
{
    m_mpdb.close();
}

bool MetricPostPersistence::needMigration(const QString &instanceName,
                                          const std::optional<QString> &legacyArchiveFolder)
{
    return LegacyArchive(legacyArchiveFolder, instanceName).exists();
}

void MetricPostPersistence::migrate()
{
    if (!needMigration(m_instanceName, m_legacyArchiveFolder))
        return;
    LegacyArchive archive(m_legacyArchiveFolder, m_instanceName);
    const LegacyArchive::Contents contents = archive.unarchiveFromLegacy();

    saveEntities(contents.events, PersistenceType::events);
    saveEntities(contents.people, PersistenceType::people);
    saveEntities(contents.groups, PersistenceType::groups);
    UserDefaults &suite = *m_userDefaults;
    if (contents.properties) {
        saveSuperProperties(contents.properties->superProperties, m_instanceName, suite);
        saveTimedEvents(contents.properties->timedEvents, m_instanceName, suite);
        saveIdentity(contents.properties->identity, m_instanceName, suite);
    }
    if (contents.optOutStatus)
        saveOptOutStatusFlag(*contents.optOutStatus, m_instanceName, suite);
    archive.remove();
}

void MetricPostPersistence::saveOptOutStatusFlag(bool value, const QString &instanceName,
                                                 UserDefaults &suite)
{
    suite.setValues({{key(instanceName, Keys::optOutStatus), value}});
}

std::optional<bool> MetricPostPersistence::loadOptOutStatusFlag(const QString &instanceName,
                                                                const UserDefaults &suite)
{
    return boolean(suite.value(key(instanceName, Keys::optOutStatus)));
}

void MetricPostPersistence::saveTimedEvents(const Properties &timedEvents,
                                            const QString &instanceName, UserDefaults &suite)
{
    saveArchived(timedEvents, Keys::timedEvents, QLatin1String("timed events"), instanceName,
                 suite);
}

Properties MetricPostPersistence::loadTimedEvents(const QString &instanceName,
                                                  const UserDefaults &suite)
{
    return loadArchived(Keys::timedEvents, QLatin1String("timed events"), instanceName, suite);
}

void MetricPostPersistence::saveSuperProperties(const Properties &superProperties,
                                                const QString &instanceName, UserDefaults &suite)
{
    saveArchived(superProperties, Keys::superProperties, QLatin1String("super properties"),
                 instanceName, suite);
}

Properties MetricPostPersistence::loadSuperProperties(const QString &instanceName,
                                                      const UserDefaults &suite)
{
    return loadArchived(Keys::superProperties, QLatin1String("super properties"), instanceName,
                        suite);
}

void MetricPostPersistence::saveFlags(const Properties &flags, const QString &instanceName,
                                      UserDefaults &suite)
{
    saveArchived(flags, Keys::flags, QLatin1String("flags"), instanceName, suite);
}

Properties MetricPostPersistence::loadFlags(const QString &instanceName, const UserDefaults &suite)
{
    return loadArchived(Keys::flags, QLatin1String("flags"), instanceName, suite);
}

void MetricPostPersistence::saveIdentity(const MetricPostIdentity &identity,
                                         const QString &instanceName, UserDefaults &suite)
{
    suite.setValues(valuesOf(identity, instanceName));
}

MetricPostIdentity MetricPostPersistence::saveIdentityIfAbsent(const MetricPostIdentity &identity,
                                                               const QString &instanceName,
                                                               UserDefaults &suite)
{
    suite.setValuesIfAbsent(key(instanceName, Keys::distinctID), valuesOf(identity, instanceName));
    return loadIdentity(instanceName, suite);
}

MetricPostIdentity MetricPostPersistence::loadIdentity(const QString &instanceName,
                                                       const UserDefaults &suite)
{
    const auto value = [&](QLatin1String name) { return suite.value(key(instanceName, name)); };
    return {value(Keys::distinctID).toString(), text(value(Keys::peopleDistinctID)),
            text(value(Keys::anonymousId)),     text(value(Keys::userId)),
            text(value(Keys::alias)),           boolean(value(Keys::hadPersistedDistinctId))};
}

void MetricPostPersistence::deleteMPUserDefaultsData(const QString &instanceName,
                                                     UserDefaults &suite)
{
    QMap<QString, QVariant> removals;
    for (const QLatin1String name :
         {Keys::optOutStatus, Keys::timedEvents, Keys::superProperties, Keys::distinctID,
          Keys::peopleDistinctID, Keys::anonymousId, Keys::userId, Keys::alias,
          Keys::hadPersistedDistinctId, Keys::flags}) {
        removals.insert(key(instanceName, name), {});
    }
    suite.setValues(removals);
}

} // namespace metricpost
