// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostType.h"
#include "PersistenceType.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <chrono>
#include <functional>
#include <limits>
#include <optional>
#include <stop_token>

struct sqlite3;
struct sqlite3_stmt;

namespace metricpost
{

/// The SQLite database of one instance: a table for each kind of record, a row for each record.
///
/// It has no lock of its own; one serial queue calls it. No failure reaches the caller: each is
/// logged, and a failed write throws the file away and starts an empty one, because a store
/// that cannot be written must not stop later events. Another process's lock is waited for, up
/// to `lockLimit`.
class MPDB
{
public:
    static constexpr QLatin1String DB_FILE_NAME{"MPDB.sqlite"};
    static constexpr int allRows = std::numeric_limits<int>::max();
    static constexpr std::chrono::seconds lockLimit{30};

    /// Where a database lives and what it depends on.
    struct Surroundings {
        /// The caches folder; without one no database is opened.
        std::optional<QString> folder;
        /// Seconds since 1970.
        std::function<double()> now;
        /// Asked to stop, a wait for another process's lock is given up. The write that waited
        /// is lost, and the file is left alone.
        std::stop_token stop;
    };

    /// Opens the database that the token's letters and digits name.
    MPDB(const QString &token, Surroundings surroundings);
    ~MPDB();
    Q_DISABLE_COPY_MOVE(MPDB)

    void open();
    void close();

    void insertRow(PersistenceType type, const QByteArray &data, bool flag = false);
    void deleteRows(PersistenceType type, const QList<qint32> &ids = {}, bool isDeleteAll = false);
    void updateRowsFlag(PersistenceType type, bool newFlag);

    /// The oldest rows with that flag, oldest first, each with its row identity as "id".
    QList<Properties> readRows(PersistenceType type, int numRows, bool flag = false);

    const QString &apiToken() const { return m_apiToken; }
    std::optional<QString> path() const;
    QString tableName(PersistenceType type) const;

private:
    class Statement;
    /// What to log of a write; the table's name follows each. Put together only when it is logged.
    struct WriteMessages {
        QLatin1String success;
        QLatin1String failure;
        QLatin1String statement;
    };

    void reconnect();
    void recreate();
    void enableWriteAheadLog();
    void createTableFor(PersistenceType type);
    void createIndexFor(PersistenceType type);
    void write(const QString &table, const QString &sql, const WriteMessages &messages,
               const std::function<void(sqlite3_stmt *)> &bind = {});
    void logSqlError(const std::optional<QString> &message = {});
    static int waitForLock(void *self, int attempt);

    const QString m_apiToken;
    const Surroundings m_surroundings;
    sqlite3 *m_connection = nullptr;
    std::chrono::steady_clock::time_point m_lockWaitEnds;
};

} // namespace metricpost
