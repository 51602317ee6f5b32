// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/OfflineEngine.h"

#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

/// A file of the folder data/.
inline QString testData(const char *name)
{
    QFile data(QString::fromUtf8(OFFLINE_TEST_DATA) + u'/' + QString::fromUtf8(name));
    EXPECT_TRUE(data.open(QIODevice::ReadOnly)) << name;
    return QString::fromUtf8(data.readAll());
}

/// The columns of its lines, without empty ones and comments.
inline QList<QStringList> testRows(const char *name)
{
    QList<QStringList> rows;
    for (const QString &line : testData(name).split(u'\n')) {
        if (!line.isEmpty() && !line.startsWith(u'#'))
            rows.append(line.split(u'\t'));
    }
    return rows;
}

inline const OfflineEngine &engine()
{
    static const OfflineEngine shared;
    return shared;
}
