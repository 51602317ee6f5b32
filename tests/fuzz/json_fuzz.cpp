// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Whatever text arrives is decoded or refused; what was decoded survives a round trip.
#include "AnyCodable.h"
#include "JSONHandler.h"

#include <cstdlib>

using metricpost::AnyCodable;
using metricpost::JSONHandler;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView input(data, qsizetype(size));
    (void)AnyCodable::decode(input);
    const auto value = JSONHandler::deserializeData(input);
    if (!value)
        return 0;
    const auto text = JSONHandler::serializeJSONObject(*value);
    if (!text || !JSONHandler::encodeAPIData(metricpost::ValueList{*value}))
        std::abort();
    const auto again = JSONHandler::deserializeData(*text);
    if (!again || !again->equals(*value))
        std::abort();
    return 0;
}
