// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/Rule.h"
#include "backend/offline/words/Lexicon.h"

namespace offline
{

/// Misspelt words, where the engine is sure of the right one. Names, code,
/// shouted words, quoted single words and other languages stay as they are.
class SpellingRule : public Rule
{
public:
    /// `lexicon` must outlive the rule.
    explicit SpellingRule(const Lexicon &lexicon)
        : m_lexicon(lexicon)
    {
    }

    void check(const Document &document, EditList &edits) const override;

private:
    bool isCandidate(const Document &document, int index) const;

    const Lexicon &m_lexicon;
};

} // namespace offline
