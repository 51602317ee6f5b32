// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/LanguageRule.h"

#include "backend/offline/words/Lexicon.h"

#include <QHash>

namespace offline
{

/// Capitals of names (languages, peoples, places, companies) and of initials:
/// data/proper-nouns.tsv has those that mean nothing else in lower case.
class ProperNounRule : public LanguageRule
{
public:
    /// `lexicon` must outlive the rule.
    explicit ProperNounRule(const Lexicon &lexicon);
    void check(const Analysis &analysis, EditList &edits) const override;

private:
    const Lexicon &m_lexicon;
    QHash<QString, QString> m_names; ///< as written, by their lower case
};

} // namespace offline
