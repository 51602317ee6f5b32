// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "SettingsUserDefaults.h"

#include "MetricPost/MetricPostLogger.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace metricpost
{

namespace
{

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

} // namespace

SettingsUserDefaults::SettingsUserDefaults(const QString &path)
    : m_path(path)
{
}

QVariant SettingsUserDefaults::value(const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    const auto known = m_known.constFind(key);
    if (known != m_known.cend())
        return *known;
    const QVariant stored = QSettings(m_path, QSettings::IniFormat).value(key);
    m_known.insert(key, stored);
    return stored;
}

void SettingsUserDefaults::setValues(const QMap<QString, QVariant> &values)
{
    const std::lock_guard lock(m_mutex);
    QMap<QString, QVariant> changed;
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        const auto known = m_known.constFind(entry.key());
        if (known == m_known.cend() || *known != entry.value())
            changed.insert(entry.key(), entry.value());
    }
    if (changed.isEmpty())
        return;

    // The file must have its permissions before it has contents.
    QDir().mkpath(QFileInfo(m_path).path());
    if (QFile file(m_path); !file.exists())
        (void)file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly);

    // An object for each write: QSettings belongs to one thread, and this class to none.
    QSettings settings(m_path, QSettings::IniFormat);
    for (auto entry = changed.cbegin(); entry != changed.cend(); ++entry) {
        if (entry.value().isValid())
            settings.setValue(entry.key(), entry.value());
        else
            settings.remove(entry.key());
        m_known.insert(entry.key(), entry.value());
    }
    settings.sync();
    if (settings.status() != QSettings::NoError) {
        MetricPostLogger::error(
            [this] { return QStringLiteral("Unable to write user defaults at path: ") + m_path; });
    }
    QFile::setPermissions(m_path, ownerOnly);
}

} // namespace metricpost
