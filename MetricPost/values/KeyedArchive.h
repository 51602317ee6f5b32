// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostType.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace metricpost
{

/// The typed binary form of values that are kept outside the database. Any thread.
///
/// Layout: the four bytes "MPKA", one byte version (1), then one value. A value is one tag byte
/// and its contents, all numbers big-endian:
///
///     'n' null                         's' text: 32-bit length, UTF-8
///     'b' Boolean: 1 byte, 0 or 1      'u' URL: 32-bit length, its encoded form
///     'i' Int: 64 bits                 't' date: signed 64-bit milliseconds since 1970, UTC
///     'w' UInt: 64 bits                'a' array: 32-bit count, values
///     'd' Double: 64 bits, IEEE 754    'm' dictionary: 32-bit count, texts (no tag) and values
///     'f' Float: 32 bits, IEEE 754     'e' set: 32-bit count, values; read as an array
///     'o' boxed number: a 'b', 'i', 'w' or 'd' value
///
/// Reading admits exactly this: an unknown tag or version, broken UTF-8, a length beyond the
/// data, bytes left over and nesting beyond maxDepth refuse the whole archive.
class KeyedArchive
{
public:
    static constexpr int maxDepth = 64;

    /// Optionals are archived as what they wrap. Nothing for a value outside the set.
    static std::optional<QByteArray> archive(const MetricPostType &value);
    static std::optional<MetricPostType> unarchive(QByteArrayView data);
};

} // namespace metricpost
