// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/analytics/EventTracker.h"
#include "quillet/writing/WritingEndpoint.h"

#include <QStringList>

/// Doubles of what the button and the popup report to and ask.
namespace fake
{

/// Keeps each event as a line: its name and its properties.
class Tracker : public EventTracker
{
public:
    QStringList events;
    void track(const QString &event, const QMap<QString, QString> &properties) override
    {
        QString line = event;
        for (auto it = properties.begin(); it != properties.end(); ++it)
            line += u' ' + it.key() + u'=' + it.value();
        events.append(line);
    }
};

/// Without a URL there is no backend.
class Endpoint : public WritingEndpoint
{
public:
    QString url;
    void withEndpoint(Ready ready) override
    {
        ready(url, url.isEmpty() ? QStringLiteral("no backend") : QString());
    }
};

} // namespace fake
