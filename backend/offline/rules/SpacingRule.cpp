// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/SpacingRule.h"

#include <algorithm>

namespace offline
{

namespace
{

/// How common a word is that opens a sentence: "end.Then", not "token.Escape".
constexpr int sentenceOpening = 10;

/// Whether wide gaps are this text's layout: columns or justified lines.
bool hasWideLayout(const Document &document)
{
    int wide = 0;
    const int count = int(document.words().size());
    for (int i = 1; i < count; ++i) {
        const QStringView gap = document.gapBefore(i);
        if (gap.contains(u"   ") || gap.contains(u'\t'))
            return true;
        wide += gap == u"  " ? 1 : 0;
    }
    return wide > 2 + count / 25;
}

/// Whether the line around `position` separates fields with commas, as tables do.
bool isDataLine(const QString &text, qsizetype position)
{
    constexpr int fields = 3;
    int tight = 0;
    for (qsizetype i = position; i > 0 && !isLineBreak(text.at(i - 1)); --i)
        tight += text.at(i - 1) == u',' && !text.at(i).isSpace() ? 1 : 0;
    for (qsizetype i = position + 1; i < text.size() && !isLineBreak(text.at(i)); ++i)
        tight += text.at(i - 1) == u',' && !text.at(i).isSpace() ? 1 : 0;
    return tight >= fields;
}

} // namespace

/// What should stand between two words; the gap itself when it is right.
QString SpacingRule::corrected(QStringView gap, const Word &before, const Word &after,
                               bool last) const
{
    QString same = gap.toString();
    QString rest = gap.mid(1).toString();
    if (gap.size() >= 2 && gap[0] == u' ') {
        // "word ,word", "word , word", "word ." at the end
        const QChar mark = gap[1];
        const bool lastMark = gap.size() == 2 || gap[2].isSpace();
        if (mark == u',' && lastMark)
            return last || gap.size() > 2 ? rest : rest + u' ';
        const bool spacedEllipsis = gap.count(u'.') > 1;
        const bool full = !spacedEllipsis && (mark == u'.' || mark == u'?' || mark == u'!');
        if (full && lastMark && (last || (gap.size() > 2 && after.letters == LetterCase::Capital)))
            return rest;
        return same;
    }
    if (gap.startsWith(u",,") && (gap.size() == 2 || gap[2].isSpace()))
        return gap.size() == 2 && !last ? QStringLiteral(", ") : rest;
    if (gap.startsWith(u"..") && gap.count(u'.') == 2 &&
        (gap.size() == 2 ? last : gap[2].isSpace()) &&
        (last || after.letters == LetterCase::Capital))
        return rest;
    if (last)
        return same;
    const bool words = m_lexicon.level(before.lower) >= 5 && m_lexicon.level(after.lower) >= 5 &&
                       before.length > 1;
    if (gap == u"," && words && after.length > 1 && !after.hyphenated)
        return QStringLiteral(", ");
    if (gap.size() == 1 && QStringView(u".!?").contains(gap[0]) && words &&
        before.letters != LetterCase::Upper && after.letters == LetterCase::Capital &&
        m_lexicon.level(after.lower) >= sentenceOpening)
        return same + u' ';
    return same;
}

void SpacingRule::check(const Document &document, EditList &edits) const
{
    const bool wideLayout = hasWideLayout(document);
    const int count = int(document.words().size());
    for (int i = 0; i < count; ++i) {
        const Word &before = document.word(i);
        const bool last = i + 1 == count;
        const Word after = last ? Word() : document.word(i + 1);
        QStringView gap = document.gapBefore(i + 1);
        if (before.lower.isEmpty() || (!last && after.lower.isEmpty()) ||
            !document.isEnglish(before))
            continue;
        if (!last && std::any_of(gap.begin(), gap.end(), isLineBreak))
            continue;
        if (last)
            gap = gap.left(std::min<qsizetype>(gap.size(), 5)); // what follows is not between words
        QString right = corrected(gap, before, after, last);
        if (!wideLayout && !last && gap == u"  ")
            right = QStringLiteral(" ");
        const bool field = gap == u"," && right != gap && isDataLine(document.text(), before.end());
        if (right != gap && !field)
            edits.replace(before.end(), gap.size(), right);
    }
}

} // namespace offline
