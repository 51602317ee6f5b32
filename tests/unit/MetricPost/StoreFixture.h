// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MPDB.h"
#include "TestSupport.h"

#include <QFile>

#include <gtest/gtest.h>

namespace metricpost::test
{

inline const QString table = u"metricpost_ab12cd_events"_qs;

struct Store : testing::Test {
    MPDB::Surroundings surroundings() const
    {
        return {.folder = sandbox.folder.path(),
                .now = [clock = sandbox.now] { return clock->load(); },
                .lockLimit = std::chrono::milliseconds(10)};
    }
    QStringList names(MPDB &database, int numRows = MPDB::allRows) const
    {
        QStringList result;
        for (const Properties &row : database.readRows(PersistenceType::events, numRows))
            result.append(textAt(row, {u"n"_qs}));
        return result;
    }
    void insert(MPDB &database, const QString &name) const
    {
        *sandbox.now = *sandbox.now + 1;
        database.insertRow(PersistenceType::events, "{\"n\":\"" + name.toUtf8() + "\"}");
    }
    QString count() const { return query(file, u"SELECT count(*) FROM "_qs + table).value(0); }
    /// Overwrites everything behind the pages of the schema.
    void damage() const
    {
        constexpr int intact = 10 * 4096;
        QFile damaged(file);
        ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
        ASSERT_GT(damaged.size(), 2 * intact);
        damaged.seek(intact);
        damaged.write(QByteArray(damaged.size() - intact, '\xff'));
    }
    void fill(int rows) const
    {
        MPDB database(u"ab12cd"_qs, surroundings());
        database.setGrouping(true);
        for (int i = 0; i < rows; ++i)
            insert(database, QString(2000, u'x'));
    }
    QList<qint64> ids(const QList<Properties> &rows) const
    {
        QList<qint64> result;
        for (const Properties &row : rows)
            result.append(*row[u"id"_qs].get<qint64>());
        return result;
    }

    Sandbox sandbox;
    const QString file = sandbox.databasePath(u"ab12cd"_qs);
};

} // namespace metricpost::test
