// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Writing and reading rows.
#include "MPDB.h"

#include "JSONHandler.h"
#include "MetricPost/MetricPostLogger.h"
#include "SqliteCodes.h"
#include "Statement.h"

namespace metricpost
{

namespace
{

// The flag of rows that are set aside; reads ask for 0 or 1.
constexpr int asideFlag = 2;

QString joined(const QList<qint32> &ids)
{
    QStringList numbers;
    numbers.reserve(ids.size());
    for (const qint32 id : ids)
        numbers.append(QString::number(id));
    return u'(' + numbers.join(u',') + u')';
}

} // namespace

int MPDB::execute(const char *sql)
{
    const int code = sqlite3_exec(m_connection, sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        logSqlError();
    return code;
}

// Runs a write and deals with its failure, see the class comment. The operation returns
// SQLite's code and SQLITE_OK for success.
bool MPDB::attempt(const std::function<int()> &operation)
{
    int code = operation();
    if (primaryCode(code) == SQLITE_FULL || primaryCode(code) == SQLITE_IOERR) {
        // The write-ahead log may be what fills the disk; a checkpoint empties it.
        sqlite3_wal_checkpoint_v2(m_connection, nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr,
                                  nullptr);
        code = operation();
    }
    if (code != SQLITE_OK && !isOutsideTheFile(code))
        recreate(code);
    return code == SQLITE_OK;
}

void MPDB::insertRow(PersistenceType type, const QByteArray &data, bool flag)
{
    m_waiting.push_back({type, data, flag, m_surroundings.now()});
    m_waitingBytes += data.size();
    if (!m_grouping || m_waiting.size() >= maxRowsInTransaction)
        commit();
}

bool MPDB::commit()
{
    while (!m_waiting.empty()) {
        if (!m_connection) {
            reconnect();
            limitWaitingRows();
            return false;
        }
        int code = SQLITE_OK;
        const auto insertRows = [&] { return code = insertWaitingRows(); };
        if (attempt(insertRows)) {
            for (const Row &row : m_waiting) {
                MetricPostLogger::debug([&] {
                    return QStringLiteral("Successfully inserted row into table ") +
                           tableName(row.type);
                });
            }
            m_rowsUntilCheck -= int(m_waiting.size());
            m_waiting.clear();
            m_waitingBytes = 0;
            limitStoredRows();
        } else if (isOutsideTheFile(code)) {
            limitWaitingRows();
            return false;
        } else {
            // The row that failed is lost with the file; the others go into the new one.
            m_waitingBytes -= m_waiting.front().data.size();
            m_waiting.pop_front();
        }
    }
    return true;
}

// In one transaction; all of them or none.
int MPDB::insertWaitingRows()
{
    const bool single = m_waiting.size() == 1;
    int code = single ? SQLITE_OK : execute("BEGIN IMMEDIATE");
    std::optional<Statement> statement;
    std::optional<PersistenceType> type;
    for (auto row = m_waiting.cbegin(); code == SQLITE_OK && row != m_waiting.cend(); ++row) {
        const QString table = tableName(row->type);
        if (type != row->type) {
            type = row->type;
            statement.emplace(m_connection, QStringLiteral("INSERT INTO ") + table +
                                                QStringLiteral(" (data, flag, time) "
                                                               "VALUES(?, ?, ?);"));
        }
        code = insert(*statement, *row, table);
    }
    statement.reset();
    if (code == SQLITE_OK && !single)
        code = execute("COMMIT");
    // Some failures have ended the transaction already.
    if (code != SQLITE_OK && sqlite3_get_autocommit(m_connection) == 0)
        execute("ROLLBACK");
    return code;
}

int MPDB::insert(Statement &statement, const Row &row, const QString &table)
{
    if (!statement) {
        logSqlError(QStringLiteral("INSERT statement for table ") + table +
                    QStringLiteral(" could not be prepared"));
        return statement.code();
    }
    // The data outlives the statement.
    sqlite3_bind_blob64(statement.get(), 1, row.data.constData(), sqlite3_uint64(row.data.size()),
                        SQLITE_STATIC);
    sqlite3_bind_int(statement.get(), 2, row.flag ? 1 : 0);
    sqlite3_bind_double(statement.get(), 3, row.time);
    const int code = statement.step();
    if (code != SQLITE_DONE)
        logSqlError(QStringLiteral("Failed to insert row into table ") + table);
    sqlite3_reset(statement.get());
    return code == SQLITE_DONE ? SQLITE_OK : code;
}

bool MPDB::deleteRows(PersistenceType type, const QList<qint32> &ids, bool isDeleteAll)
{
    QString sql = QStringLiteral("DELETE FROM ") + tableName(type);
    if (!isDeleteAll)
        sql += QStringLiteral(" WHERE id IN ") + joined(ids);
    return write(type, sql,
                 {QLatin1String("Successfully deleted rows from table "),
                  QLatin1String("Failed to delete rows from table "),
                  QLatin1String("DELETE statement for table ")});
}

void MPDB::updateRowsFlag(PersistenceType type, bool newFlag)
{
    const auto word = [](bool flag) {
        return flag ? QStringLiteral("true") : QStringLiteral("false");
    };
    write(type,
          QStringLiteral("UPDATE ") + tableName(type) + QStringLiteral(" SET flag = ") +
              word(newFlag) + QStringLiteral(" where flag = ") + word(!newFlag),
          {QLatin1String("Successfully updated rows from table "),
           QLatin1String("Failed to update rows from table "),
           QLatin1String("UPDATE statement for table ")});
}

bool MPDB::setAside(PersistenceType type, const QList<qint32> &ids)
{
    return write(type,
                 QStringLiteral("UPDATE ") + tableName(type) + QStringLiteral(" SET flag = ") +
                     QString::number(asideFlag) + QStringLiteral(" WHERE id IN ") + joined(ids),
                 {QLatin1String("Successfully updated rows from table "),
                  QLatin1String("Failed to update rows from table "),
                  QLatin1String("UPDATE statement for table ")});
}

bool MPDB::write(PersistenceType type, const QString &sql, const WriteMessages &messages)
{
    if (!m_connection) {
        reconnect();
        return false;
    }
    commit();
    if (!m_connection)
        return false;
    const QString table = tableName(type);
    const bool done = attempt([&] {
        Statement statement(m_connection, sql);
        if (!statement) {
            logSqlError(messages.statement + table + QStringLiteral(" could not be prepared"));
            return statement.code();
        }
        const int code = statement.step();
        if (code != SQLITE_DONE)
            logSqlError(messages.failure + table);
        return code == SQLITE_DONE ? SQLITE_OK : code;
    });
    if (done)
        MetricPostLogger::debug([&] { return messages.success + table; });
    return done;
}

QList<Properties> MPDB::readRows(PersistenceType type, int numRows, bool flag)
{
    QList<Properties> rows;
    if (!m_connection) {
        reconnect();
        return rows;
    }
    commit();
    if (!m_connection)
        return rows;
    qsizetype deleted = 0;
    while (true) {
        rows.clear();
        QList<qint32> unreadable;
        const int code = readInto(rows, unreadable, type, numRows, flag);
        if (isDamage(code)) {
            recreate(code);
            return {};
        }
        // Deleted, since they take the place of rows that can be decoded; then read again.
        if (unreadable.isEmpty() || !deleteRows(type, unreadable))
            break;
        deleted += unreadable.size();
    }
    if (deleted > 0) {
        MetricPostLogger::warn([&] {
            return QStringLiteral("Deleted rows that cannot be decoded from table ") +
                   tableName(type) + QStringLiteral(": ") + QString::number(deleted);
        });
    }
    MetricPostLogger::info([&] {
        return QStringLiteral("Successfully read ") + QString::number(rows.size()) +
               QStringLiteral(" from table ") + tableName(type);
    });
    return rows;
}

int MPDB::readInto(QList<Properties> &rows, QList<qint32> &unreadable, PersistenceType type,
                   int numRows, bool flag)
{
    const QString table = tableName(type);
    QString sql = QStringLiteral("SELECT id, data FROM ") + table +
                  QStringLiteral(" WHERE flag = ") + (flag ? u'1' : u'0') +
                  QStringLiteral(" ORDER BY time");
    if (numRows != allRows)
        sql += QStringLiteral(" LIMIT ") + QString::number(numRows);

    Statement statement(m_connection, sql);
    if (!statement) {
        logSqlError(QStringLiteral("SELECT statement for table ") + table +
                    QStringLiteral(" could not be prepared"));
        return statement.code();
    }
    int code = SQLITE_DONE;
    while ((code = statement.step()) == SQLITE_ROW) {
        const qint32 id = sqlite3_column_int(statement.get(), 0);
        const auto *blob = static_cast<const char *>(sqlite3_column_blob(statement.get(), 1));
        if (!blob) {
            MetricPostLogger::error(
                [&] { return QStringLiteral("No blob found in data column for row in ") + table; });
            unreadable.append(id);
            continue;
        }
        const auto value = JSONHandler::deserializeData(
            QByteArrayView(blob, sqlite3_column_bytes(statement.get(), 1)));
        const Properties *record = value ? value->get<Properties>() : nullptr;
        if (!record) {
            unreadable.append(id);
            continue;
        }
        rows.append(*record);
        rows.last().insert(QStringLiteral("id"), id);
    }
    if (code != SQLITE_DONE)
        logSqlError();
    return code;
}

} // namespace metricpost
