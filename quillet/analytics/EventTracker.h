// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QMap>
#include <QString>

/// Takes note of what the user does with Quillet. Main thread; returns at once.
class EventTracker
{
public:
    virtual ~EventTracker() = default;
    virtual void track(const QString &event, const QMap<QString, QString> &properties = {}) = 0;
};
