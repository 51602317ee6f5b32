// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/text/Letters.h"

namespace offline
{

LetterCase letterCase(QStringView word)
{
    qsizetype upper = 0;
    qsizetype lower = 0;
    for (const QChar c : word) {
        if (c.isUpper())
            ++upper;
        else if (c.isLower())
            ++lower;
    }
    if (upper == 0)
        return LetterCase::Lower;
    if (lower == 0)
        return upper == 1 ? LetterCase::Capital : LetterCase::Upper;
    return upper == 1 && word.front().isUpper() ? LetterCase::Capital : LetterCase::Mixed;
}

QString capitalised(const QString &text)
{
    QString result = text;
    if (!result.isEmpty())
        result[0] = result.at(0).toUpper();
    return result;
}

QString inCaseOf(QStringView original, const QString &replacement)
{
    switch (letterCase(original)) {
    case LetterCase::Capital:
        return capitalised(replacement);
    case LetterCase::Upper:
        return replacement.toUpper();
    default:
        return replacement;
    }
}

} // namespace offline
