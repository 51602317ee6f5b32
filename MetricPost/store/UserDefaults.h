// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

namespace metricpost
{

/// A suite of small persistent values: Booleans, texts and bytes. Any thread.
class UserDefaults
{
public:
    virtual ~UserDefaults() = default;

    /// An invalid variant when there is none.
    virtual QVariant value(const QString &key) const = 0;

    /// Stores the values in one step; an invalid variant removes its key.
    virtual void setValues(const QMap<QString, QVariant> &values) = 0;

    /// Stores the values unless the key has a value, in one step also for other processes.
    virtual void setValuesIfAbsent(const QString &key, const QMap<QString, QVariant> &values) = 0;
};

} // namespace metricpost
