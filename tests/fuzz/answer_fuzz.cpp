// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// What a language model answers: the cleaner, whole and in pieces, and the guard. The input is the
// text, a zero byte, and the answer.

#include "backend/model/AnswerCleaner.h"
#include "backend/model/MeaningGuard.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString text =
        QString::fromUtf8(input.first(std::max<qsizetype>(0, input.indexOf('\0'))));
    const QString answer =
        QString::fromUtf8(input.sliced(text.isEmpty() ? 0 : input.indexOf('\0')));
    const QString delimiter = QStringLiteral("d");
    const QString cleaned = cleanedAnswer(answer, text, delimiter);
    if (cleaned.contains(QChar(0x202e)) && !text.contains(QChar(0x202e)))
        std::abort();
    AnswerStream stream(text, delimiter);
    for (qsizetype i = 0; i < answer.size(); i += 5)
        (void)stream.feed(answer.mid(i, 5));
    (void)isRefusal(cleaned, text);
    (void)isLooping(answer, text);
    (void)lostFacts(text, cleaned);
    const double share = changedShare(text, cleaned);
    if (!(share >= 0 && share <= 1))
        std::abort();
    return 0;
}
