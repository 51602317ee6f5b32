// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostType.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace metricpost
{

/// The codec for everything that is stored or sent. Any thread.
///
/// Integers of 64 bits and doubles survive a round trip exactly. Nothing throws: what cannot be
/// coded is logged and yields nothing. Objects and arrays nested deeper than maxDepth and
/// texts longer than maxBytes are refused in both directions, so whatever was stored can
/// be read again and no hostile file can exhaust the stack or the memory.
class JSONHandler
{
public:
    static constexpr int maxDepth = 256;
    static constexpr qsizetype maxBytes = 32 * 1024 * 1024;

    enum class TopLevel { Container, AnyValue };

    /// UTF-8 text of a list of records, for an upload. It may nest one level deeper and be
    /// longer than what the other operations accept.
    static std::optional<QByteArray> encodeAPIData(const MetricPostType &object);

    /// UTF-8 text of an array or dictionary, without blanks.
    static std::optional<QByteArray> serializeJSONObject(const MetricPostType &object);

    /// The array or dictionary in UTF-8 text. Whole numbers become Int, or UInt above its range.
    static std::optional<MetricPostType> deserializeData(QByteArrayView data);

    /// The same without a log line, optionally admitting a bare value at the top.
    static std::optional<MetricPostType> parse(QByteArrayView data, TopLevel topLevel);
};

} // namespace metricpost
