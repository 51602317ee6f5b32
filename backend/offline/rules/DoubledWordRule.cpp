// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/DoubledWordRule.h"

#include <algorithm>

namespace offline
{

DoubledWordRule::DoubledWordRule()
{
    const QStringList words =
        QStringLiteral("the a an of to and for with at from be are were i he she we they my your "
                       "its our their as or but if because can't could should would which who when "
                       "where this these those into than have has what how will must may")
            .split(u' ');
    m_neverRepeated = QSet<QString>(words.begin(), words.end());
}

void DoubledWordRule::check(const Document &document, EditList &edits) const
{
    const int count = int(document.words().size());
    for (int i = 1; i < count; ++i) {
        const Word &word = document.word(i);
        const Word &before = document.word(i - 1);
        if (!word.joined || word.hyphenated || before.hyphenated || word.lower != before.lower ||
            word.letters != LetterCase::Lower || !m_neverRepeated.contains(word.lower) ||
            before.letters == LetterCase::Mixed || !document.isEnglish(word))
            continue;
        // Three in a row are emphasis or play.
        const bool third = (i > 1 && document.word(i - 2).lower == word.lower) ||
                           (i + 1 < count && document.word(i + 1).lower == word.lower);
        if (third)
            continue;
        const QStringView gap = document.gapBefore(i);
        const bool broken = std::any_of(gap.begin(), gap.end(), isLineBreak);
        if (broken && before.joined) {
            // The line break stays where it is.
            const qsizetype start = document.word(i - 2).end();
            edits.replace(start, before.end() - start, QString());
        } else {
            edits.replace(before.end(), word.end() - before.end(), QString());
        }
    }
}

} // namespace offline
