// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "GzipCompression.h"

#include "MetricPost/MetricPostLogger.h"

#include <QLocale>

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace metricpost
{

namespace
{

constexpr int memoryLevel = 9;
constexpr qsizetype growthStep = 16 * 1024;

GzipError zlibError(int code, const z_stream &stream)
{
    return {code, QString::fromUtf8(stream.msg ? stream.msg : zError(code))};
}

QString number(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

} // namespace

std::variant<QByteArray, GzipError> gzipCompressed(const QByteArray &data, int level)
{
    if (data.isEmpty())
        return GzipError{0, QStringLiteral("Empty Data object cannot be compressed.")};

    z_stream stream{};
    int status =
        deflateInit2(&stream, level, Z_DEFLATED, MAX_WBITS + GzipSettings::gzipHeaderOffset,
                     memoryLevel, Z_DEFAULT_STRATEGY);
    if (status != Z_OK)
        return zlibError(status, stream);

    // zlib counts in 32 bits, so longer data goes in and out in pieces.
    constexpr qsizetype pieceLimit = std::numeric_limits<uInt>::max();
    QByteArray result;
    qsizetype consumed = 0;
    qsizetype produced = 0;
    do {
        if (stream.avail_in == 0 && consumed < data.size()) {
            const qsizetype piece = std::min(pieceLimit, data.size() - consumed);
            stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.data() + consumed));
            stream.avail_in = uInt(piece);
            consumed += piece;
        }
        result.resize(produced + growthStep);
        stream.next_out = reinterpret_cast<Bytef *>(result.data() + produced);
        stream.avail_out = uInt(growthStep);
        status = deflate(&stream, consumed == data.size() ? Z_FINISH : Z_NO_FLUSH);
        produced += growthStep - qsizetype(stream.avail_out);
    } while (status == Z_OK);

    if (status != Z_STREAM_END) {
        const GzipError error = zlibError(status, stream);
        deflateEnd(&stream);
        return error;
    }
    deflateEnd(&stream);
    result.resize(produced);

    MetricPostLogger::debug([&] {
        const double original = double(data.size());
        const double compressed = double(produced);
        return QStringLiteral("Payload gzipped: original size = ") + QString::number(data.size()) +
               QStringLiteral(" bytes, compressed size = ") + QString::number(produced) +
               QStringLiteral(" bytes, compression ratio = ") + number(original / compressed) +
               QStringLiteral(", compression percentage = ") +
               number((1 - compressed / original) * 100) + u'%';
    });
    return result;
}

} // namespace metricpost
