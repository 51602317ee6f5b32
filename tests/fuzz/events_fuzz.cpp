// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// The event stream of a language model, whole and in pieces.

#include "backend/model/ServerSentEvents.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    ServerSentEvents whole;
    const auto expected = whole.feed(input) + whole.finish();
    ServerSentEvents inPieces;
    QList<QByteArray> events;
    for (qsizetype i = 0; i < input.size(); i += 3)
        events += inPieces.feed(input.mid(i, 3));
    events += inPieces.finish();
    if (events != expected)
        std::abort();
    return 0;
}
