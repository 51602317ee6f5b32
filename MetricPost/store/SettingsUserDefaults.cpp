// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "SettingsUserDefaults.h"

#include "FileLock.h"
#include "MetricPost/MetricPostLogger.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <filesystem>
#include <sys/stat.h>

namespace metricpost
{

namespace
{

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

// Differs after every write: QSettings replaces the file. Empty when there is none.
QByteArray stateOf(const QString &path)
{
    struct stat status {
    };
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    std::error_code ignored;
    const auto written =
        std::filesystem::last_write_time(QFile::encodeName(path).toStdString(), ignored);
    QByteArray state;
    for (const qint64 part : {qint64(status.st_ino), qint64(status.st_size),
                              qint64(written.time_since_epoch().count())})
        state += QByteArray::number(part) + ' ';
    return state;
}

} // namespace

SettingsUserDefaults::SettingsUserDefaults(const QString &path)
    : m_path(path)
{
}

QVariant SettingsUserDefaults::value(const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    return valueNow(key);
}

QVariant SettingsUserDefaults::valueNow(const QString &key) const
{
    // Another process may have written since.
    if (const QByteArray state = stateOf(m_path); state != m_state) {
        m_known.clear();
        m_state = state;
    }
    const auto known = m_known.constFind(key);
    if (known != m_known.cend())
        return *known;
    QVariant stored = QSettings(m_path, QSettings::IniFormat).value(key);
    m_known.insert(key, stored);
    return stored;
}

void SettingsUserDefaults::setValues(const QMap<QString, QVariant> &values)
{
    const std::lock_guard lock(m_mutex);
    write(values);
}

void SettingsUserDefaults::setValuesIfAbsent(const QString &key,
                                             const QMap<QString, QVariant> &values)
{
    const std::lock_guard lock(m_mutex);
    // The others hold it for the moment of one write; a process that hangs must not stop this one.
    constexpr std::chrono::seconds limit{5};
    QDir().mkpath(QFileInfo(m_path).path());
    FileLock fileLock(m_path + QStringLiteral("-lock"));
    fileLock.lockWithin(FileLock::Mode::Exclusive, limit, [] { return false; });
    if (!valueNow(key).isValid())
        write(values);
}

void SettingsUserDefaults::write(const QMap<QString, QVariant> &values)
{
    QMap<QString, QVariant> changed;
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        if (valueNow(entry.key()) != entry.value())
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
    }
    settings.sync();
    if (settings.status() != QSettings::NoError) {
        MetricPostLogger::error(
            [this] { return QStringLiteral("Unable to write user defaults at path: ") + m_path; });
    }
    QFile::setPermissions(m_path, ownerOnly);
    m_known.insert(changed);
    m_state = stateOf(m_path);
}

} // namespace metricpost
