// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/TextSplitter.h"

#include <QTextBoundaryFinder>

namespace
{

/// Quarters of a token, so that sums stay whole.
int quarterTokens(QChar c)
{
    if (c.unicode() < 0x80)
        return 1;
    // Two bytes of UTF-8 make a token in the alphabets, and so do the halves of
    // a surrogate pair; East Asian and Indic characters often take more than one.
    return c.unicode() < 0x800 || c.isSurrogate() ? 4 : 6;
}

/// The end of the longest part from `start` that has `max` quarter tokens.
qsizetype fittingEnd(const QString &text, qsizetype start, qint64 max)
{
    qint64 sum = 0;
    qsizetype i = start;
    for (; i < text.size(); ++i) {
        sum += quarterTokens(text[i]);
        if (sum > max)
            break;
    }
    // A part has a character at least, however little it may have.
    const qsizetype character = start + 1 < text.size() && text[start].isHighSurrogate() ? 2 : 1;
    return std::max(i, start + character);
}

bool endsParagraph(const QString &text, qsizetype i)
{
    // A line break with nothing but white space before it on its line.
    if (text[i - 1] == QChar::ParagraphSeparator)
        return true;
    if (text[i - 1] != u'\n')
        return false;
    auto k = i - 2;
    while (k >= 0 && text[k] != u'\n' && text[k].isSpace())
        --k;
    return k >= 0 && text[k] == u'\n';
}

bool endsLine(const QString &text, qsizetype i)
{
    return text[i - 1] == u'\n' || text[i - 1] == QChar::LineSeparator;
}

bool endsSentence(const QString &text, qsizetype i)
{
    if (QStringView(u"。！？।").contains(text[i - 1]))
        return true;
    return i >= 2 && text[i - 1].isSpace() && QStringView(u".!?…").contains(text[i - 2]);
}

bool endsWord(const QString &text, qsizetype i)
{
    return text[i - 1].isSpace();
}

/// A place to cut in (start, end].
qsizetype bestCut(const QString &text, qsizetype start, qsizetype end)
{
    using Test = bool (*)(const QString &, qsizetype);
    for (const Test test : {&endsParagraph, &endsLine, &endsSentence, &endsWord}) {
        // A paragraph or line is worth a shorter part, down to an eighth.
        for (auto i = end; i > start + (end - start) / 8; --i) {
            if (test(text, i))
                return i;
        }
    }
    const auto window = std::max(start, end - 64);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.constData() + window,
                               std::min(text.size(), end + 64) - window);
    finder.setPosition(end - window);
    const auto cut = finder.isAtBoundary() ? end : window + finder.toPreviousBoundary();
    return cut > start ? cut : end;
}

void append(QList<TextPart> &parts, const QString &text, bool forModel)
{
    if (text.isEmpty())
        return;
    if (!forModel && !parts.isEmpty() && !parts.last().forModel)
        parts.last().text += text;
    else
        parts += {text, forModel};
}

} // namespace

int estimatedTokens(QStringView text)
{
    qint64 sum = 0;
    for (const QChar c : text)
        sum += quarterTokens(c);
    return int(std::min<qint64>((sum + 3) / 4, std::numeric_limits<int>::max()));
}

QList<TextPart> splitText(const QString &text, int maxTokens)
{
    QList<TextPart> parts;
    qsizetype start = 0;
    while (start < text.size()) {
        auto end = fittingEnd(text, start, 4LL * maxTokens);
        if (end < text.size())
            end = bestCut(text, start, end);
        auto first = start;
        auto last = end;
        while (first < end && text[first].isSpace())
            ++first;
        while (last > first && text[last - 1].isSpace())
            --last;
        append(parts, text.mid(start, first - start), false);
        append(parts, text.mid(first, last - first), true);
        append(parts, text.mid(last, end - last), false);
        start = end;
    }
    return parts;
}

QString shortened(const QString &text, int maxTokens)
{
    if (estimatedTokens(text) <= maxTokens)
        return text;
    const auto parts = splitText(text, maxTokens / 2);
    const QString beginning = parts.value(parts.first().forModel ? 0 : 1).text;
    const QString end = parts.value(parts.size() - (parts.last().forModel ? 1 : 2)).text;
    return beginning + QStringLiteral("\n\n[…]\n\n") + end;
}
