// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "FileLock.h"
#include "MetricPost/MetricPostType.h"
#include "PersistenceType.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <chrono>
#include <deque>
#include <functional>
#include <limits>
#include <optional>
#include <stop_token>

struct sqlite3;

namespace metricpost
{

class Statement;

/// The bounds of a database. Beyond them the oldest rows are dropped.
struct StoreLimits {
    /// For each table.
    int maxRows = 1'000'000;
    /// For the file's used pages.
    qint64 maxBytes = qint64(256) * 1024 * 1024;
    /// For the rows in memory that cannot be written at the moment.
    std::size_t maxWaitingRows = 10'000;
    qint64 maxWaitingBytes = qint64(16) * 1024 * 1024;
};

/// The SQLite database of one instance: a table for each kind of record, a row for each record.
///
/// It has no lock of its own; one serial queue calls it. Several processes may have the same
/// database open. No failure reaches the caller; each is logged.
///
/// A failed write has one of two causes. Outside the file (a full disk, another process's lock, no
/// permission): the file stays, and rows that could not be inserted wait in memory for the next
/// write. Inside the file (damage, a missing table): the file is thrown away and an empty one takes
/// its place, because a store that cannot be written must not stop later events. A file that
/// another process has open is emptied in place.
class MPDB
{
public:
    using Limits = StoreLimits;

    static constexpr QLatin1String DB_FILE_NAME{"MPDB.sqlite"};
    static constexpr int allRows = std::numeric_limits<int>::max();
    /// Rows of one transaction when many wait.
    static constexpr std::size_t maxRowsInTransaction = 500;

    /// Where a database lives and what it depends on.
    struct Surroundings {
        /// The caches folder; without one no database is opened.
        std::optional<QString> folder = {};
        /// Seconds since 1970.
        std::function<double()> now = {};
        /// Ends a wait for another process's lock.
        std::stop_token stop = {};
        /// How long to wait for another process's lock.
        std::chrono::milliseconds lockLimit = std::chrono::seconds(30);
        StoreLimits limits = {};
    };

    /// Opens the database that the token's letters and digits name.
    MPDB(const QString &token, Surroundings surroundings);
    /// Writes what waits.
    ~MPDB();
    Q_DISABLE_COPY_MOVE(MPDB)

    void open();
    void close();

    /// While grouping is on, inserted rows wait for `commit` or for any other operation, so that
    /// one transaction takes many. At first it is off and each row is written at once.
    void setGrouping(bool grouping) { m_grouping = grouping; }
    /// Writes the rows that wait. False when some still wait.
    bool commit();

    void insertRow(PersistenceType type, const QByteArray &data, bool flag = false);
    /// False when the rows are still there.
    bool deleteRows(PersistenceType type, const QList<qint32> &ids = {}, bool isDeleteAll = false);
    void updateRowsFlag(PersistenceType type, bool newFlag);
    /// Keeps the rows out of later reads, whatever their flag. False when that failed.
    bool setAside(PersistenceType type, const QList<qint32> &ids);

    /// The oldest rows with that flag, oldest first, each with its row identity as "id". Rows that
    /// cannot be decoded are deleted. A damaged file is replaced, and nothing is returned.
    QList<Properties> readRows(PersistenceType type, int numRows, bool flag = false);

    /// Gives unused pages back to the file system when they are most of a large file.
    void shrink();

    /// Rows that the limits dropped.
    qint64 droppedRows() const { return m_droppedRows; }

    const QString &apiToken() const { return m_apiToken; }
    std::optional<QString> path() const;
    /// The path that a database of that token has in the folder.
    static QString path(const QString &folder, const QString &token);
    QString tableName(PersistenceType type) const;

private:
    struct Row {
        PersistenceType type;
        QByteArray data;
        bool flag;
        double time;
    };
    /// What to log of a write; the table's name follows each. Put together only when it is logged.
    struct WriteMessages {
        QLatin1String success;
        QLatin1String failure;
        QLatin1String statement;
    };

    // Opening and replacing the file (MPDBFile.cpp).
    void openConnection(const QString &file);
    void reconnect();
    void recreate(int code);
    void emptyInPlace(int code);
    void enableWriteAheadLog();
    void createTables();
    void createTableFor(PersistenceType type);
    void createIndexFor(PersistenceType type);
    void logSqlError(const std::optional<QString> &message = {});
    static int waitForLock(void *self, int attempt);

    // Writing and reading (MPDB.cpp). The codes are SQLite's.
    bool attempt(const std::function<int()> &operation);
    int execute(const char *sql);
    int insertWaitingRows();
    int insert(Statement &statement, const Row &row, const QString &table);
    bool write(PersistenceType type, const QString &sql, const WriteMessages &messages);
    int readInto(QList<Properties> &rows, QList<qint32> &unreadable, PersistenceType type,
                 int numRows, bool flag);

    // Keeping to the limits (MPDBLimits.cpp).
    qint64 number(const QString &sql);
    void limitWaitingRows();
    void limitStoredRows();
    void dropOldest(PersistenceType type, qint64 lastId);
    void countDropped(qint64 rows);

    const QString m_apiToken;
    const Surroundings m_surroundings;
    sqlite3 *m_connection = nullptr;
    /// Shared while the database is open. Exclusive: no other process has it open.
    std::optional<FileLock> m_inUse;
    std::chrono::steady_clock::time_point m_lockWaitEnds;
    bool m_grouping = false;
    std::deque<Row> m_waiting;
    qint64 m_waitingBytes = 0;
    qint64 m_droppedRows = 0;
    int m_rowsUntilCheck = 0;
};

} // namespace metricpost
