// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/Rule.h"
#include "backend/offline/words/Lexicon.h"

namespace offline
{

/// Capitals that English asks for: at the start of a sentence, the pronoun "I",
/// and the names of days and months.
class CapitalRule : public Rule
{
public:
    /// `lexicon` must outlive the rule.
    explicit CapitalRule(const Lexicon &lexicon)
        : m_lexicon(lexicon)
    {
    }

    void check(const Document &document, EditList &edits) const override;

private:
    static bool isSpokenOpening(const QString &lower);
    bool isPronoun(const Document &document, int index) const;
    bool opensCarelessly(const Document &document, size_t sentence) const;

    const Lexicon &m_lexicon;
};

} // namespace offline
