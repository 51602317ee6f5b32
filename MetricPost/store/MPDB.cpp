// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MPDB.h"

#include "JSONHandler.h"
#include "MetricPost/MetricPostLogger.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <thread>

namespace metricpost
{

namespace
{

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

QString lettersAndDigits(const QString &token)
{
    QString result;
    const auto characters = token.toUcs4();
    for (const uint character : characters) {
        if (QChar::isLetterOrNumber(character))
            result += QChar::fromUcs4(character);
    }
    return result;
}

// The database's own file and those that SQLite keeps beside it.
QStringList filesOf(const QString &path)
{
    return {path, path + QStringLiteral("-wal"), path + QStringLiteral("-shm")};
}

// SQLite gives the files that it creates beside a database the database's permissions.
void keepPrivate(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    if (QFile file(path); !file.exists())
        (void)file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly);
    const QStringList files = filesOf(path);
    for (const QString &file : files) {
        if (QFile::exists(file))
            QFile::setPermissions(file, ownerOnly);
    }
}

} // namespace

/// A prepared statement, finalised at the end of its scope.
class MPDB::Statement
{
public:
    Statement(sqlite3 *connection, const QString &sql)
    {
        const QByteArray text = sql.toUtf8();
        sqlite3_prepare_v2(connection, text.constData(), int(text.size()), &m_statement, nullptr);
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Q_DISABLE_COPY_MOVE(Statement)

    explicit operator bool() const { return m_statement != nullptr; }
    sqlite3_stmt *get() const { return m_statement; }
    int step() { return sqlite3_step(m_statement); }

private:
    sqlite3_stmt *m_statement = nullptr;
};

MPDB::MPDB(const QString &token, Surroundings surroundings)
    : m_apiToken(lettersAndDigits(token))
    , m_surroundings(std::move(surroundings))
{
    open();
}

MPDB::~MPDB()
{
    if (m_connection)
        close();
}

std::optional<QString> MPDB::path() const
{
    if (!m_surroundings.folder)
        return std::nullopt;
    return *m_surroundings.folder + u'/' + m_apiToken + u'_' + DB_FILE_NAME;
}

QString MPDB::tableName(PersistenceType type) const
{
    return QStringLiteral("metricpost_") + m_apiToken + u'_' + rawValue(type);
}

void MPDB::open()
{
    if (m_apiToken.isEmpty()) {
        MetricPostLogger::error([] {
            return QStringLiteral("Project token must not be empty. Database cannot be opened.");
        });
        return;
    }
    const auto file = path();
    if (!file)
        return;

    keepPrivate(*file);
    const int status = sqlite3_open_v2(QFile::encodeName(*file).constData(), &m_connection,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (status != SQLITE_OK) {
        logSqlError(QStringLiteral("Error opening or creating database at path: ") + *file);
        close();
        return;
    }
    sqlite3_busy_handler(m_connection, &MPDB::waitForLock, this);
    MetricPostLogger::info([&] {
        return QStringLiteral("Successfully opened connection to database at path: ") + *file;
    });
    enableWriteAheadLog();
    for (const PersistenceType type : allPersistenceTypes) {
        createTableFor(type);
        createIndexFor(type);
    }
}

void MPDB::enableWriteAheadLog()
{
    Statement statement(m_connection, QStringLiteral("PRAGMA journal_mode=WAL;"));
    if (!statement) {
        MetricPostLogger::error([] {
            return QStringLiteral("PRAGMA journal_mode=WAL statement could not be prepared");
        });
    } else if (statement.step() != SQLITE_ROW) {
        MetricPostLogger::error([] { return QStringLiteral("Failed to enable journal_mode=WAL"); });
    } else {
        MetricPostLogger::info([&] {
            const auto *mode =
                reinterpret_cast<const char *>(sqlite3_column_text(statement.get(), 0));
            return QStringLiteral("SQLite journal mode set to ") + QString::fromUtf8(mode);
        });
    }
}

void MPDB::createTableFor(PersistenceType type)
{
    const QString table = tableName(type);
    Statement statement(m_connection,
                        QStringLiteral("CREATE TABLE IF NOT EXISTS ") + table +
                            QStringLiteral("(id integer primary key autoincrement,data blob,time "
                                           "real,flag integer);"));
    if (!statement) {
        logSqlError(QStringLiteral("CREATE statement for table ") + table +
                    QStringLiteral(" could not be prepared"));
    } else if (statement.step() != SQLITE_DONE) {
        logSqlError(table + QStringLiteral(" table create failed"));
    } else {
        MetricPostLogger::info([&] { return table + QStringLiteral(" table created"); });
    }
}

void MPDB::createIndexFor(PersistenceType type)
{
    const QString table = tableName(type);
    const QString index = QStringLiteral("idx_") + table + QStringLiteral("_time");
    Statement statement(m_connection, QStringLiteral("CREATE INDEX IF NOT EXISTS ") + index +
                                          QStringLiteral(" ON ") + table +
                                          QStringLiteral(" (time);"));
    if (!statement) {
        logSqlError(QStringLiteral("CREATE statement for index ") + index +
                    QStringLiteral(" could not be prepared"));
    } else if (statement.step() != SQLITE_DONE) {
        logSqlError(index + QStringLiteral(" index creation failed"));
    } else {
        MetricPostLogger::info([&] { return index + QStringLiteral(" index created"); });
    }
}

void MPDB::close()
{
    sqlite3_close_v2(m_connection);
    m_connection = nullptr;
    MetricPostLogger::info([] { return QStringLiteral("Connection to database closed."); });
}

void MPDB::reconnect()
{
    MetricPostLogger::warn(
        [] { return QStringLiteral("No database connection found. Calling MPDB.open()"); });
    open();
}

void MPDB::recreate()
{
    close();
    if (const auto database = path()) {
        const QStringList files = filesOf(*database);
        for (const QString &name : files) {
            QFile file(name);
            if (!file.exists())
                continue;
            if (file.remove()) {
                MetricPostLogger::info(
                    [&] { return QStringLiteral("Deleted database file at path: ") + name; });
            } else {
                MetricPostLogger::error([&] {
                    return QStringLiteral("Unable to remove database file at path: ") + name +
                           QStringLiteral(", error: ") + file.errorString();
                });
            }
        }
    }
    reconnect();
}

void MPDB::insertRow(PersistenceType type, const QByteArray &data, bool flag)
{
    const QString table = tableName(type);
    write(table,
          QStringLiteral("INSERT INTO ") + table +
              QStringLiteral(" (data, flag, time) VALUES(?, ?, ?);"),
          {QLatin1String("Successfully inserted row into table "),
           QLatin1String("Failed to insert row into table "),
           QLatin1String("INSERT statement for table ")},
          [&](sqlite3_stmt *statement) {
              // The data outlives the statement.
              sqlite3_bind_blob64(statement, 1, data.constData(), sqlite3_uint64(data.size()),
                                  SQLITE_STATIC);
              sqlite3_bind_int(statement, 2, flag ? 1 : 0);
              sqlite3_bind_double(statement, 3, m_surroundings.now());
          });
}

void MPDB::deleteRows(PersistenceType type, const QList<qint32> &ids, bool isDeleteAll)
{
    const QString table = tableName(type);
    QString sql = QStringLiteral("DELETE FROM ") + table;
    if (!isDeleteAll) {
        QStringList numbers;
        numbers.reserve(ids.size());
        for (const qint32 id : ids)
            numbers.append(QString::number(id));
        sql += QStringLiteral(" WHERE id IN (") + numbers.join(u',') + u')';
    }
    write(table, sql,
          {QLatin1String("Successfully deleted rows from table "),
           QLatin1String("Failed to delete rows from table "),
           QLatin1String("DELETE statement for table ")});
}

void MPDB::updateRowsFlag(PersistenceType type, bool newFlag)
{
    const QString table = tableName(type);
    const auto word = [](bool flag) {
        return flag ? QStringLiteral("true") : QStringLiteral("false");
    };
    write(table,
          QStringLiteral("UPDATE ") + table + QStringLiteral(" SET flag = ") + word(newFlag) +
              QStringLiteral(" where flag = ") + word(!newFlag),
          {QLatin1String("Successfully updated rows from table "),
           QLatin1String("Failed to update rows from table "),
           QLatin1String("UPDATE statement for table ")});
}

void MPDB::write(const QString &table, const QString &sql, const WriteMessages &messages,
                 const std::function<void(sqlite3_stmt *)> &bind)
{
    if (!m_connection) {
        reconnect();
        return;
    }
    bool succeeded = false;
    {
        Statement statement(m_connection, sql);
        if (!statement) {
            logSqlError(messages.statement + table + QStringLiteral(" could not be prepared"));
        } else {
            if (bind)
                bind(statement.get());
            succeeded = statement.step() == SQLITE_DONE;
            if (!succeeded)
                logSqlError(messages.failure + table);
        }
    }
    if (succeeded) {
        MetricPostLogger::debug([&] { return messages.success + table; });
        return;
    }
    // A wait that the end of the program cut short says nothing against the file.
    if (m_surroundings.stop.stop_requested() &&
        (sqlite3_errcode(m_connection) & 0xff) == SQLITE_BUSY) {
        return;
    }
    recreate();
}

QList<Properties> MPDB::readRows(PersistenceType type, int numRows, bool flag)
{
    QList<Properties> rows;
    if (!m_connection) {
        reconnect();
        return rows;
    }
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
        return rows;
    }
    int status = SQLITE_DONE;
    while ((status = statement.step()) == SQLITE_ROW) {
        const auto *blob = static_cast<const char *>(sqlite3_column_blob(statement.get(), 1));
        if (!blob) {
            MetricPostLogger::error(
                [&] { return QStringLiteral("No blob found in data column for row in ") + table; });
            continue;
        }
        const auto value = JSONHandler::deserializeData(
            QByteArrayView(blob, sqlite3_column_bytes(statement.get(), 1)));
        const Properties *record = value ? value->get<Properties>() : nullptr;
        if (!record)
            continue;
        rows.append(*record);
        rows.last().insert(QStringLiteral("id"), sqlite3_column_int(statement.get(), 0));
    }
    if (status != SQLITE_DONE)
        logSqlError();
    MetricPostLogger::info([&] {
        return QStringLiteral("Successfully read ") + QString::number(rows.size()) +
               QStringLiteral(" from table ") + table;
    });
    return rows;
}

void MPDB::logSqlError(const std::optional<QString> &message)
{
    if (!m_connection) {
        reconnect();
        return;
    }
    if (message)
        MetricPostLogger::error([&] { return *message; });
    MetricPostLogger::error([&] { return QString::fromUtf8(sqlite3_errmsg(m_connection)); });
}

// See sqlite3_busy_handler: the attempt counts up within one wait, zero gives up.
int MPDB::waitForLock(void *self, int attempt)
{
    auto &database = *static_cast<MPDB *>(self);
    const auto now = std::chrono::steady_clock::now();
    if (attempt == 0)
        database.m_lockWaitEnds = now + lockLimit;
    if (now >= database.m_lockWaitEnds || database.m_surroundings.stop.stop_requested())
        return 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(std::min(1 + attempt, 20)));
    return 1;
}

} // namespace metricpost
