// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostType.h"

#include <QByteArrayView>

#include <variant>

namespace metricpost
{

/// An arbitrary JSON value as decoding finds it: Int, Double, String, Bool, an array, a
/// dictionary or nothing, tried in that order. A number without a fraction is therefore an Int,
/// however it was written, and a Double where Int cannot hold it. Any thread.
class AnyCodable
{
public:
    struct DecodingError {
        QString message;
    };

    static std::variant<AnyCodable, DecodingError> decode(QByteArrayView json);

    /// The unwrapped value; an empty Optional for null.
    const MetricPostType &value() const { return m_value; }

private:
    explicit AnyCodable(const MetricPostType &value)
        : m_value(value)
    {
    }

    MetricPostType m_value;
};

} // namespace metricpost
