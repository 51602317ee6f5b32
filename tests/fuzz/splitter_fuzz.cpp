// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// The splitter: nothing of a text is lost, and no part is longer than asked for.

#include "backend/model/TextSplitter.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 1)
        return 0;
    const int maxTokens = 2 + data[0];
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    QString joined;
    const auto parts = splitText(text, maxTokens);
    for (const TextPart &part : parts) {
        joined += part.text;
        if (part.forModel && estimatedTokens(part.text) > maxTokens)
            std::abort();
    }
    if (joined != text)
        std::abort();
    (void)shortened(text, maxTokens);
    return 0;
}
