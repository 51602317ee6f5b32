// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Whatever bytes arrive are read or refused; what was read can be written and read again.
#include "JSONHandler.h"
#include "KeyedArchive.h"

#include <cstdlib>

using metricpost::JSONHandler;
using metricpost::KeyedArchive;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto value = KeyedArchive::unarchive({data, qsizetype(size)});
    if (!value)
        return 0;
    const auto written = KeyedArchive::archive(*value);
    const auto again = written ? KeyedArchive::unarchive(*written) : std::nullopt;
    if (!again)
        std::abort();
    // Records of archives are stored and sent.
    (void)JSONHandler::encodeAPIData(metricpost::ValueList{*value});
    (void)(value->isValidNestedTypeAndValue() && value->equals(*again));
    (void)value->description();
    // Bytes and not values: NaN equals nothing.
    if (KeyedArchive::archive(*again) != written)
        std::abort();
    return 0;
}
