// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/SpellingRule.h"

#include <QHash>

#include <algorithm>

namespace offline
{

bool SpellingRule::isCandidate(const Document &document, int index) const
{
    const Word &word = document.word(index);
    if (word.lower.isEmpty() || word.hyphenated || !document.isEnglish(word))
        return false;
    if (word.letters == LetterCase::Capital)
        return document.isFirstOfSentence(index) && document.sentenceOf(word).end > index + 1;
    return word.letters == LetterCase::Lower;
}

void SpellingRule::check(const Document &document, EditList &edits) const
{
    const int count = int(document.words().size());
    QHash<QString, int> uses;
    for (const Word &word : document.words())
        ++uses[word.lower];

    QHash<QString, QString> corrections;
    for (int i = 0; i < count; ++i) {
        if (!isCandidate(document, i) || document.isMentioned(i))
            continue;
        const Word &word = document.word(i);
        auto correction = corrections.constFind(word.lower);
        if (correction == corrections.constEnd())
            correction = corrections.insert(word.lower, m_lexicon.correction(word.lower));
        if (correction->isEmpty())
            continue;
        // A word that the writer uses again is a term of theirs, and one with a
        // capital may be a name, unless many people write the mistake.
        const bool doubtful = uses.value(word.lower) > 1 || word.letters == LetterCase::Capital;
        if (doubtful && !m_lexicon.isCommonMisspelling(word.lower))
            continue;
        const QStringView original = QStringView(document.text()).mid(word.start, word.length);
        edits.replace(word.start, word.length, inCaseOf(original, *correction));
    }
}

} // namespace offline
