// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/SplitWordRule.h"

namespace offline
{

SplitWordRule::SplitWordRule(const Lexicon &lexicon)
    : m_lexicon(lexicon)
{
}

void SplitWordRule::check(const Analysis &analysis, EditList &edits) const
{
    constexpr double needed = 1.5;
    constexpr double neededAfterAdjective = 2.3; // "a green house" can be right
    constexpr int known = 1;                     // level of the joined word
    // What stands before any noun or verb proves nothing: "in complete", "so us".
    constexpr TagSet open = {Tag::Nn, Tag::Nns, Tag::Nnp, Tag::Jj, Tag::Vb, Tag::Vbp, Tag::Rb};
    constexpr TagSet verbs = {Tag::Vb, Tag::Vbp, Tag::Vbd, Tag::Vbn};
    constexpr TagSet particles = {Tag::In, Tag::Rb, Tag::Rp};
    constexpr TagSet beforeNoun = {Tag::Dt, Tag::Jj};
    for (int i = 0; i + 1 < int(analysis.tags.size()); ++i) {
        if (!analysis.joins(i + 1) || !analysis.mayChange(i) || !analysis.mayChange(i + 1) ||
            !open.has(analysis.tag(i)) || analysis.lower(i) == u"every" ||
            analysis.lower(i).size() < 2 ||
            analysis.document.word(i + 1).letters != LetterCase::Lower ||
            analysis.document.gapBefore(i + 1) != u" ")
            continue;
        const QString joined = analysis.lower(i) + analysis.lower(i + 1);
        if (m_lexicon.level(joined) < known || !m_lexicon.knows(joined))
            continue;
        // "to set back" is a verb, "a set back" is not.
        const TagSet first = analysis.inflections.possible(analysis.lower(i));
        if (first.hasAny(verbs) && particles.has(analysis.tag(i + 1)) &&
            (!analysis.joins(i) || !beforeNoun.has(analysis.tag(i - 1))))
            continue;
        const double least = analysis.tag(i) == Tag::Jj ? neededAfterAdjective : needed;
        if (analysis.context.gain(i, 2, {joined}) >= least)
            edits.replace(analysis.document.word(i).end(), 1, QString());
    }
}

} // namespace offline
