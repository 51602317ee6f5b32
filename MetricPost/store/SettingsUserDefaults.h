// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "UserDefaults.h"

#include <QByteArray>

#include <mutex>

namespace metricpost
{

/// A suite in an INI file that only its owner may read. Any thread; several processes may share
/// the file, and each sees what the others wrote.
///
/// Values are written through at once, and only when they differ from the file's: timed events
/// are saved with every tracked event and rarely change.
class SettingsUserDefaults : public UserDefaults
{
public:
    explicit SettingsUserDefaults(const QString &path);

    QVariant value(const QString &key) const override;
    void setValues(const QMap<QString, QVariant> &values) override;
    void setValuesIfAbsent(const QString &key, const QMap<QString, QVariant> &values) override;

private:
    // With m_mutex held.
    QVariant valueNow(const QString &key) const;
    void write(const QMap<QString, QVariant> &values);

    const QString m_path;
    mutable std::mutex m_mutex;
    // What is known of the file in the state that m_state describes.
    mutable QMap<QString, QVariant> m_known;
    mutable QByteArray m_state;
};

} // namespace metricpost
