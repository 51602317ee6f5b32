// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "LegacyArchive.h"

#include "KeyedArchive.h"
#include "MetricPost/MetricPostLogger.h"

#include <QFile>

#include <algorithm>
#include <array>

namespace metricpost
{

namespace
{

constexpr std::array allTypes{LegacyArchiveType::events, LegacyArchiveType::people,
                              LegacyArchiveType::groups, LegacyArchiveType::properties,
                              LegacyArchiveType::optOutStatus};

QString rawValue(LegacyArchiveType type)
{
    switch (type) {
    case LegacyArchiveType::events:
        return QStringLiteral("events");
    case LegacyArchiveType::people:
        return QStringLiteral("people");
    case LegacyArchiveType::groups:
        return QStringLiteral("groups");
    case LegacyArchiveType::properties:
        return QStringLiteral("properties");
    case LegacyArchiveType::optOutStatus:
        break;
    }
    return QStringLiteral("optOutStatus");
}

template <class T> std::optional<T> member(const Properties &dictionary, const QString &name)
{
    const auto entry = dictionary.constFind(name);
    const T *value = entry == dictionary.cend() ? nullptr : entry->template get<T>();
    return value ? std::optional(*value) : std::nullopt;
}

} // namespace

LegacyArchive::LegacyArchive(std::optional<QString> folder, QString instanceName)
    : m_folder(std::move(folder))
    , m_instanceName(std::move(instanceName))
{
}

std::optional<QString> LegacyArchive::path(LegacyArchiveType type) const
{
    if (!m_folder)
        return std::nullopt;
    return *m_folder + QStringLiteral("/metricpost-") + m_instanceName + u'-' + rawValue(type);
}

bool LegacyArchive::exists() const
{
    return std::any_of(allTypes.begin(), allTypes.end(), [this](LegacyArchiveType type) {
        const auto file = path(type);
        return file && QFile::exists(*file);
    });
}

MetricPostType LegacyArchive::unarchive(LegacyArchiveType type) const
{
    const auto name = path(type);
    if (!name) {
        MetricPostLogger::error([] { return QStringLiteral("bad file path, cant fetch file"); });
        return {};
    }
    QFile file(*name);
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly)) {
        MetricPostLogger::error(
            [&] { return QStringLiteral("Unable to read file at path: ") + *name; });
        return {};
    }
    const auto value = KeyedArchive::unarchive(file.readAll());
    if (!value)
        MetricPostLogger::error([] { return QStringLiteral("can't unarchive file"); });
    return value.value_or(MetricPostType());
}

QList<Properties> LegacyArchive::records(LegacyArchiveType type) const
{
    QList<Properties> result;
    const MetricPostType value = unarchive(type);
    if (const ValueList *array = value.get<ValueList>()) {
        for (const MetricPostType &element : *array) {
            if (const Properties *record = element.get<Properties>())
                result.append(*record);
        }
    }
    return result;
}

LegacyArchive::Contents LegacyArchive::unarchiveFromLegacy() const
{
    Contents contents;
    contents.events = records(LegacyArchiveType::events);
    contents.people = records(LegacyArchiveType::people);
    contents.groups = records(LegacyArchiveType::groups);

    const MetricPostType propertiesValue = unarchive(LegacyArchiveType::properties);
    if (const Properties *properties = propertiesValue.get<Properties>()) {
        const auto text = [&](const QString &name) { return member<QString>(*properties, name); };
        const auto nested = [&](const QString &name) {
            return member<Properties>(*properties, name).value_or(Properties());
        };
        contents.properties = {
            nested(QStringLiteral("superProperties")),
            nested(QStringLiteral("timedEvents")),
            {text(QStringLiteral("distinctId")).value_or(QString()),
             text(QStringLiteral("peopleDistinctId")), text(QStringLiteral("anonymousId")),
             text(QStringLiteral("userId")), text(QStringLiteral("alias")),
             member<bool>(*properties, QStringLiteral("hadPersistedDistinctId"))},
        };
    }
    const MetricPostType optOut = unarchive(LegacyArchiveType::optOutStatus);
    if (const bool *status = optOut.get<bool>())
        contents.optOutStatus = *status;
    return contents;
}

void LegacyArchive::remove() const
{
    for (const LegacyArchiveType type : allTypes) {
        const auto name = path(type);
        if (!name || !QFile::exists(*name))
            continue;
        if (QFile file(*name); !file.remove()) {
            MetricPostLogger::error([&] {
                return QStringLiteral("Unable to remove file at path: ") + *name +
                       QStringLiteral(", error: ") + file.errorString();
            });
        }
    }
}

} // namespace metricpost
