// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

#include <variant>

namespace metricpost
{

struct GzipSettings {
    /// Added to zlib's window bits to ask for a gzip wrapper (zlib.h, deflateInit2).
    static constexpr int gzipHeaderOffset = 16;
};

struct GzipError {
    /// zlib's code, or 0 when zlib was not asked.
    int code = 0;
    QString message;
};

/// The data in the gzip format (RFC 1952). The level is zlib's, -1 its default. Any thread.
std::variant<QByteArray, GzipError> gzipCompressed(const QByteArray &data, int level = -1);

} // namespace metricpost
