// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/ProperNounRule.h"

#include "backend/offline/Resources.h"

namespace offline
{

ProperNounRule::ProperNounRule()
{
    for (const QList<QString> &row : resourceTable(u"proper-nouns.tsv")) {
        for (const QString &name : row.at(0).split(u' '))
            m_names.insert(name);
    }
}

void ProperNounRule::check(const Analysis &analysis, EditList &edits) const
{
    for (int i = 0; i < int(analysis.tags.size()); ++i) {
        const Word &word = analysis.document.word(i);
        QStringView name = word.lower;
        if (name.endsWith(u"'s"))
            name.chop(2);
        if (word.letters == LetterCase::Lower && m_names.contains(name.toString()) &&
            analysis.mayChange(i))
            edits.replace(word.start, 1, analysis.document.text().mid(word.start, 1).toUpper());
    }
}

} // namespace offline
