// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/ProperNounRule.h"

#include "backend/offline/Resources.h"

#include <algorithm>

namespace offline
{

ProperNounRule::ProperNounRule()
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
        const auto found = m_names.constFind(name.toString());
        if (word.letters != LetterCase::Lower || found == m_names.constEnd() ||
            !analysis.mayChange(i))
            continue;
        const bool spelt = std::any_of(found->begin(), found->end(),
                                       [](QChar letter) { return letter.isUpper(); });
        if (spelt)
            edits.replace(word.start, name.size(), *found);
        else
            edits.replace(word.start, 1, analysis.document.text().mid(word.start, 1).toUpper());
    }
}

} // namespace offline
