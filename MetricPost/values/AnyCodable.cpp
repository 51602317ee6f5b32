// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "AnyCodable.h"

#include "JSONHandler.h"

#include <cmath>

namespace metricpost
{

namespace
{

MetricPostType decoded(const MetricPostType &parsed)
{
    if (const auto *unsignedNumber = parsed.get<quint64>())
        return double(*unsignedNumber);
    if (const auto *real = parsed.get<double>()) {
        // 2^63 is the first double above the range of Int.
        constexpr double limit = 9223372036854775808.0;
        if (*real >= -limit && *real < limit && std::trunc(*real) == *real)
            return qint64(*real);
    }
    if (const auto *array = parsed.get<ValueList>()) {
        ValueList result;
        result.reserve(array->size());
        for (const MetricPostType &element : *array)
            result.append(decoded(element));
        return result;
    }
    if (const auto *dictionary = parsed.get<Properties>()) {
        Properties result;
        for (auto entry = dictionary->cbegin(); entry != dictionary->cend(); ++entry)
            result.insert(entry.key(), decoded(entry.value()));
        return result;
    }
    if (parsed.kind() == MetricPostType::Kind::Null)
        return std::optional<QString>();
    return parsed;
}

} // namespace

std::variant<AnyCodable, AnyCodable::DecodingError> AnyCodable::decode(QByteArrayView json)
{
    const auto parsed = JSONHandler::parse(json, JSONHandler::TopLevel::AnyValue);
    if (!parsed)
        return DecodingError{QStringLiteral("Unsupported type in AnyCodable.")};
    return AnyCodable(decoded(*parsed));
}

} // namespace metricpost
