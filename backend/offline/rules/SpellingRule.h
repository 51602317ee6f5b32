// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/language/Context.h"
#include "backend/offline/rules/Rule.h"
#include "backend/offline/words/Lexicon.h"

#include <optional>

namespace offline
{

/// Misspelt words. The right word is chosen by the kind of mistake that it takes
/// and by how likely the language model finds it between its neighbours. Names,
/// code, shouted words, quoted single words and other languages stay as they
/// are; so does a word for which no candidate is likely.
class SpellingRule : public Rule
{
public:
    /// The arguments must outlive the rule.
    SpellingRule(const Lexicon &lexicon, const LanguageModel &model)
        : m_lexicon(lexicon)
        , m_model(model)
    {
    }

    void check(const Document &document, EditList &edits) const override;

private:
    bool makePhrase(const QString &left, const QString &right) const;
    bool isCandidate(const Document &document, int index) const;
    QString correction(const Document &document, const Context &context, int index,
                       bool doubtful) const;

    const Lexicon &m_lexicon;
    const LanguageModel &m_model;
};

} // namespace offline
