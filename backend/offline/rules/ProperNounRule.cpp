// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/ProperNounRule.h"

#include "backend/offline/Resources.h"

#include <algorithm>

namespace offline
{

namespace
{

/// Whether the word before neither describes nor counts the one at `index`: "a
/// mohawk" and "gum arabic" are things.
bool standsAlone(const Analysis &analysis, int index)
{
    constexpr TagSet before = {Tag::In,  Tag::Of,  Tag::To,  Tag::Cc,  Tag::Vb,
                               Tag::Vbd, Tag::Vbz, Tag::Vbp, Tag::Vbg, Tag::Uh};
    return analysis.joins(index) && before.has(analysis.tag(index - 1));
}

} // namespace

ProperNounRule::ProperNounRule(const Lexicon &lexicon)
    : m_lexicon(lexicon)
{
    for (const QList<QString> &row : resourceTable(u"proper-nouns.tsv")) {
        for (const QString &name : row.at(0).split(u' '))
            m_names.insert(name.toLower(), name);
    }
}

void ProperNounRule::check(const Analysis &analysis, EditList &edits) const
{
    for (int i = 0; i < int(analysis.tags.size()); ++i) {
        const Word &word = analysis.document.word(i);
        QStringView name = word.lower;
        if (name.endsWith(u"'s"))
            name.chop(2);
        if (word.letters != LetterCase::Lower || !analysis.mayChange(i))
            continue;
        const auto found = m_names.constFind(name.toString());
        const bool spelt =
            found != m_names.constEnd() &&
            std::any_of(found->begin(), found->end(), [](QChar c) { return c.isUpper(); });
        if (spelt)
            edits.replace(word.start, name.size(), *found);
        else if (found != m_names.constEnd() ||
                 (standsAlone(analysis, i) && m_lexicon.isName(name.toString())))
            edits.replace(word.start, 1, analysis.document.text().mid(word.start, 1).toUpper());
    }
}

} // namespace offline
