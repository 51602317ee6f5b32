// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "UserDefaults.h"

#include <mutex>

namespace metricpost
{

/// A suite in an INI file that only its owner may read. Any thread.
///
/// Values are written through at once, and only when they differ from what this object last
/// read or wrote: timed events are saved with every tracked event and rarely change.
class SettingsUserDefaults : public UserDefaults
{
public:
    explicit SettingsUserDefaults(const QString &path);

    QVariant value(const QString &key) const override;
    void setValues(const QMap<QString, QVariant> &values) override;

private:
    const QString m_path;
    mutable std::mutex m_mutex;
    mutable QMap<QString, QVariant> m_known;
};

} // namespace metricpost
