// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/CodePoints.h"

#include <algorithm>

namespace platform::linux_
{

qint64 codePointCount(const QString &text)
{
    qint64 count = text.size();
    for (qsizetype i = 1; i < text.size(); ++i) {
        if (text.at(i).isLowSurrogate() && text.at(i - 1).isHighSurrogate())
            --count;
    }
    return count;
}

qint64 utf16Offset(const QString &text, qint64 position)
{
    qsizetype offset = 0;
    for (; position > 0 && offset < text.size(); --position) {
        const bool pair = text.at(offset).isHighSurrogate() && offset + 1 < text.size() &&
                          text.at(offset + 1).isLowSurrogate();
        offset += pair ? 2 : 1;
    }
    return offset;
}

CFRange utf16Range(const QString &text, qint64 start, qint64 end, qint64 count)
{
    if (end < start)
        std::swap(start, end);
    if (count == text.size()) {
        start = std::clamp<qint64>(start, 0, count);
        return {start, std::clamp<qint64>(end, 0, count) - start};
    }
    const qint64 first = utf16Offset(text, start);
    return {first, utf16Offset(text, end) - first};
}

QString withoutPairMarks(QString text)
{
    for (qsizetype i = text.size() - 1; i > 0; --i) {
        if (text.at(i) == QChar(0xfeff) && text.at(i - 1).isLowSurrogate())
            text.remove(i, 1);
    }
    return text;
}

namespace
{

/// Whether the number of characters before `at`, taken for UTF-16 units, cuts a character.
bool isCutByCharacters(const QString &text, qsizetype at)
{
    const qint64 characters = codePointCount(text.first(at));
    return characters > 0 && text.at(characters - 1).isHighSurrogate();
}

} // namespace

bool isSelection(const QString &text, qsizetype position, qsizetype length, qint64 start,
                 qint64 end)
{
    const auto means = [&text](qint64 answer, qsizetype at) {
        const qint64 characters = codePointCount(text.first(at));
        return answer == characters || answer == at ||
               (!isCutByCharacters(text, at) && answer == codePointCount(text.first(characters)));
    };
    return means(start, position) && means(end, position + length);
}

bool isSelectionHidden(const QString &text, qsizetype position, qsizetype length)
{
    return isCutByCharacters(text, position) || isCutByCharacters(text, position + length);
}

QString withLineFeeds(QString text)
{
    // Looking for two characters takes several times as long as looking for one.
    if (text.contains(QLatin1Char('\r'))) {
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    }
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return text;
}

} // namespace platform::linux_
