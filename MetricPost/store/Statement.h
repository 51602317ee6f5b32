// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <sqlite3.h>

namespace metricpost
{

/// A prepared statement, finalised at the end of its scope.
class Statement
{
public:
    Statement(sqlite3 *connection, const QString &sql)
    {
        const QByteArray text = sql.toUtf8();
        m_code = sqlite3_prepare_v2(connection, text.constData(), int(text.size()), &m_statement,
                                    nullptr);
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Q_DISABLE_COPY_MOVE(Statement)

    explicit operator bool() const { return m_statement != nullptr; }
    sqlite3_stmt *get() const { return m_statement; }
    /// SQLite's result of the preparation.
    int code() const { return m_code; }
    int step() { return sqlite3_step(m_statement); }

private:
    sqlite3_stmt *m_statement = nullptr;
    int m_code = SQLITE_OK;
};

} // namespace metricpost
