// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <sqlite3.h>

namespace metricpost
{

/// The result code without its extension.
inline int primaryCode(int code)
{
    constexpr int mask = 0xff;
    return code & mask;
}

/// Whether a failure says nothing about the file: a full disk, another process's lock, missing
/// permissions or memory.
inline bool isOutsideTheFile(int code)
{
    switch (primaryCode(code)) {
    case SQLITE_AUTH:
    case SQLITE_BUSY:
    case SQLITE_CANTOPEN:
    case SQLITE_FULL:
    case SQLITE_INTERRUPT:
    case SQLITE_IOERR:
    case SQLITE_LOCKED:
    case SQLITE_NOLFS:
    case SQLITE_NOMEM:
    case SQLITE_PERM:
    case SQLITE_PROTOCOL:
    case SQLITE_READONLY:
        return true;
    default:
        return false;
    }
}

/// Whether the file's contents are broken.
inline bool isDamage(int code)
{
    return primaryCode(code) == SQLITE_CORRUPT || primaryCode(code) == SQLITE_NOTADB;
}

} // namespace metricpost
