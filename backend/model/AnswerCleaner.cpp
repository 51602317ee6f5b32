// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/AnswerCleaner.h"

namespace
{

QString withoutThoughts(const QString &answer, const QString &text)
{
    const auto opening = u"<think>"_qs;
    const auto closing = u"</think>"_qs;
    if (text.contains(opening) || text.contains(closing))
        return answer;
    const auto end = answer.indexOf(closing);
    // Some chat templates open the section themselves, so that the answer has
    // only its end.
    const bool wrapping = answer.startsWith(opening) || !answer.contains(opening);
    if (end >= 0 && wrapping)
        return answer.mid(end + closing.size()).trimmed();
    // Thoughts without an end have no answer behind them.
    return answer.startsWith(opening) ? QString() : answer;
}

QString withoutFence(const QString &answer, const QString &text)
{
    const auto fence = u"```"_qs;
    if (text.contains(fence) || !answer.startsWith(fence) || !answer.endsWith(fence) ||
        answer.count(fence) != 2) {
        return answer;
    }
    const auto firstLineEnd = answer.indexOf(u'\n');
    if (firstLineEnd < 0)
        return answer;
    // The first line may name the language of the "code".
    const QString language = answer.mid(fence.size(), firstLineEnd - fence.size()).trimmed();
    if (language.contains(u' '))
        return answer;
    return answer.mid(firstLineEnd + 1, answer.size() - firstLineEnd - 1 - fence.size()).trimmed();
}

bool isUnwantedControl(QChar c)
{
    // Also what turns the order of the letters around: only the writer may mean that.
    return (c < u' ' && c != u'\n' && c != u'\r' && c != u'\t') ||
           (c >= u'\x7f' && c < QChar(0xa0)) || c == QChar(0x202d) || c == QChar(0x202e);
}

} // namespace

QString cleanedAnswer(const QString &answer, const QString &text, const QString &delimiter)
{
    QString result = withoutThoughts(answer.trimmed(), text);
    result.remove(QStringLiteral("<text-%1>").arg(delimiter));
    result.remove(QStringLiteral("</text-%1>").arg(delimiter));
    result = withoutFence(result.trimmed(), text);
    result.removeIf([&text](QChar c) { return isUnwantedControl(c) && !text.contains(c); });
    const auto lineFeeds = text.count(u'\n');
    const auto pairs = text.count(u"\r\n"_qs);
    if (pairs == 0 || pairs == lineFeeds) {
        result.replace(u"\r\n"_qs, u"\n"_qs);
        if (pairs > 0)
            result.replace(u"\n"_qs, u"\r\n"_qs);
    }
    return result;
}
