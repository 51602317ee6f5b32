// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/Rule.h"
#include "backend/offline/words/Verbs.h"

#include <QHash>
#include <QStringList>

#include <vector>

namespace offline
{

/// Replaces phrases by those of a table (data/concise.tsv describes the
/// notation), in every form of their verbs and nouns and in the case of the
/// text. The longest phrase at a place wins.
class PhraseRule : public Rule
{
public:
    enum class Rows { All, Safe };

    /// Reads the table of that name; `Safe` takes only the rows so marked.
    /// `verbs` must outlive the rule.
    PhraseRule(QStringView table, Rows rows, const Verbs &verbs);

    void check(const Document &document, EditList &edits) const override;

private:
    struct Phrase {
        QStringList words;
        QString replacement; ///< empty: the phrase goes
        QString participle;  ///< instead, after "have" or "be", where that differs
        bool opensSentence = false;
    };

    void addRow(const QString &phrase, const QString &replacement);
    void add(const QString &phrase, const QString &replacement, VerbForm form = VerbForm::Base);
    bool mayChange(const Phrase &phrase, const Document &document, int at) const;
    bool matches(const Phrase &phrase, const Document &document, int at) const;
    void apply(const Phrase &phrase, const Document &document, int at, EditList &edits) const;

    const Verbs &m_verbs;
    QHash<QString, std::vector<Phrase>> m_byFirstWord;
};

} // namespace offline
