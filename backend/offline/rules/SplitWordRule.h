// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/LanguageRule.h"
#include "backend/offline/words/Lexicon.h"

namespace offline
{

/// One word that is written as two: "a minor set back". The language model
/// decides by how much more likely the sentence is with the one word.
class SplitWordRule : public LanguageRule
{
public:
    /// `lexicon` must outlive the rule.
    explicit SplitWordRule(const Lexicon &lexicon);
    void check(const Analysis &analysis, EditList &edits) const override;

private:
    const Lexicon &m_lexicon;
};

} // namespace offline
