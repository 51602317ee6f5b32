// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Opening, closing and replacing the file.
#include "MPDB.h"

#include "MetricPost/MetricPostLogger.h"
#include "SqliteCodes.h"
#include "Statement.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

MPDB::MPDB(const QString &token, Surroundings surroundings)
    : m_apiToken(lettersAndDigits(token))
    , m_surroundings(std::move(surroundings))
{
    if (const auto file = path())
        m_inUse.emplace(*file + QStringLiteral("-inuse"));
    open();
}

MPDB::~MPDB()
{
    if (!m_connection)
        return;
    commit();
    close();
}

std::optional<QString> MPDB::path() const
{
    if (!m_surroundings.folder)
        return std::nullopt;
    return path(*m_surroundings.folder, m_apiToken);
}

QString MPDB::path(const QString &folder, const QString &token)
{
    return folder + u'/' + lettersAndDigits(token) + u'_' + DB_FILE_NAME;
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
    // Exclusive holders have it for the moment that it takes to replace the file.
    m_inUse->lockWithin(FileLock::Mode::Shared, m_surroundings.lockLimit,
                        [this] { return m_surroundings.stop.stop_requested(); });
    openConnection(*file);
}

void MPDB::openConnection(const QString &file)
{
    const int status = sqlite3_open_v2(QFile::encodeName(file).constData(), &m_connection,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (status != SQLITE_OK) {
        logSqlError(QStringLiteral("Error opening or creating database at path: ") + file);
        close();
        return;
    }
    sqlite3_busy_handler(m_connection, &MPDB::waitForLock, this);
    MetricPostLogger::info([&] {
        return QStringLiteral("Successfully opened connection to database at path: ") + file;
    });
    enableWriteAheadLog();
    createTables();
}

void MPDB::createTables()
{
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
    if (m_inUse)
        m_inUse->unlock();
    MetricPostLogger::info([] { return QStringLiteral("Connection to database closed."); });
}

void MPDB::reconnect()
{
    MetricPostLogger::warn(
        [] { return QStringLiteral("No database connection found. Calling MPDB.open()"); });
    open();
}

// After a failed write, or a read that found damage; `code` is SQLite's.
void MPDB::recreate(int code)
{
    if (m_inUse && !m_inUse->tryLock(FileLock::Mode::Exclusive)) {
        // Another process has the file open, and must not lose it.
        m_inUse->tryLock(FileLock::Mode::Shared);
        emptyInPlace(code);
        return;
    }
    sqlite3_close_v2(m_connection);
    m_connection = nullptr;
    MetricPostLogger::info([] { return QStringLiteral("Connection to database closed."); });
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

// Empties a damaged file (see SQLITE_DBCONFIG_RESET_DATABASE). A table that is merely missing is
// created; what the other tables hold belongs to the other process too.
void MPDB::emptyInPlace(int code)
{
    if (isDamage(code)) {
        sqlite3_db_config(m_connection, SQLITE_DBCONFIG_RESET_DATABASE, 1, nullptr);
        if (sqlite3_exec(m_connection, "VACUUM", nullptr, nullptr, nullptr) != SQLITE_OK)
            logSqlError();
        sqlite3_db_config(m_connection, SQLITE_DBCONFIG_RESET_DATABASE, 0, nullptr);
    }
    createTables();
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
        database.m_lockWaitEnds = now + database.m_surroundings.lockLimit;
    if (now >= database.m_lockWaitEnds || database.m_surroundings.stop.stop_requested())
        return 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(std::min(1 + attempt, 20)));
    return 1;
}

} // namespace metricpost
