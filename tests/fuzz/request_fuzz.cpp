// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// The HTTP request parser and the request target, whole and in pieces.

#include "backend/http/RequestParser.h"
#include "backend/http/RequestTarget.h"

#include <algorithm>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    using Outcome = RequestParser::Outcome;
    RequestParser whole;
    QByteArray buffer = input;
    const Outcome outcome = whole.feed(buffer);

    RequestParser inPieces;
    QByteArray pending;
    Outcome last = Outcome::NeedMore;
    for (qsizetype i = 0; i < input.size() && last == Outcome::NeedMore; i += 7) {
        pending += input.mid(i, 7);
        last = inPieces.feed(pending);
        (void)inPieces.takeExpectContinue();
    }
    if (outcome == Outcome::Complete) {
        const HttpRequest request = whole.request();
        (void)parseRequestTarget(request.target);
        if (last != Outcome::Complete || inPieces.request().target != request.target)
            std::abort();
    }
    (void)parseRequestTarget(input);
    return 0;
}
