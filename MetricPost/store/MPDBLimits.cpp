// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Keeping memory and file within their limits.
#include "MPDB.h"

#include "MetricPost/MetricPostLogger.h"
#include "Statement.h"

#include <algorithm>

namespace metricpost
{

qint64 MPDB::number(const QString &sql)
{
    Statement statement(m_connection, sql);
    if (!statement || statement.step() != SQLITE_ROW)
        return 0;
    return sqlite3_column_int64(statement.get(), 0);
}

void MPDB::limitWaitingRows()
{
    const Limits &limits = m_surroundings.limits;
    qint64 dropped = 0;
    while (m_waiting.size() > limits.maxWaitingRows || m_waitingBytes > limits.maxWaitingBytes) {
        m_waitingBytes -= m_waiting.front().data.size();
        m_waiting.pop_front();
        ++dropped;
    }
    countDropped(dropped);
}

// Row identities only grow, so the difference of the outermost two bounds the number of rows. It is
// looked up far more quickly than rows are counted.
void MPDB::limitStoredRows()
{
    if (m_rowsUntilCheck > 0)
        return;
    constexpr int rowsBetweenChecks = 256;
    const Limits &limits = m_surroundings.limits;
    m_rowsUntilCheck = std::min(rowsBetweenChecks, limits.maxRows / 8);
    const qint64 usedBytes = (number(QStringLiteral("PRAGMA page_count")) -
                              number(QStringLiteral("PRAGMA freelist_count"))) *
                             number(QStringLiteral("PRAGMA page_size"));
    // A little more than what is too much, since rows differ in size.
    const double surplus = usedBytes > limits.maxBytes
                               ? 1 - double(limits.maxBytes) / double(usedBytes) + 1.0 / 16
                               : 0;
    for (const PersistenceType type : allPersistenceTypes) {
        const QString table = tableName(type);
        const qint64 newest = number(QStringLiteral("SELECT max(id) FROM ") + table);
        const qint64 oldest = number(QStringLiteral("SELECT min(id) FROM ") + table);
        if (surplus > 0 && newest > 0)
            dropOldest(type, oldest + qint64(double(newest - oldest) * surplus));
        if (newest - oldest >= limits.maxRows)
            dropOldest(type, newest - limits.maxRows);
    }
}

void MPDB::dropOldest(PersistenceType type, qint64 lastId)
{
    const QString sql = QStringLiteral("DELETE FROM ") + tableName(type) +
                        QStringLiteral(" WHERE id <= ") + QString::number(lastId);
    if (execute(sql.toUtf8().constData()) == SQLITE_OK)
        countDropped(sqlite3_changes(m_connection));
}

void MPDB::countDropped(qint64 rows)
{
    if (rows > 0 && m_droppedRows == 0) {
        MetricPostLogger::warn([] {
            return QStringLiteral("The store is full; the oldest records are being dropped");
        });
    }
    m_droppedRows += rows;
}

void MPDB::shrink()
{
    if (!m_connection)
        return;
    constexpr qint64 smallFile = qint64(1024) * 1024;
    const qint64 pages = number(QStringLiteral("PRAGMA page_count"));
    const qint64 unused = number(QStringLiteral("PRAGMA freelist_count"));
    if (unused * number(QStringLiteral("PRAGMA page_size")) < smallFile || unused < pages / 2)
        return;
    // Both may fail while another process reads; the next flush tries again.
    sqlite3_exec(m_connection, "VACUUM", nullptr, nullptr, nullptr);
    sqlite3_wal_checkpoint_v2(m_connection, nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
}

} // namespace metricpost
