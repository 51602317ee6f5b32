// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/Rule.h"
#include "backend/offline/words/Lexicon.h"

namespace offline
{

/// "a" or "an" by the sound that follows: an hour, a university, an MRI, an 8.
/// Words whose sound the engine does not know keep the article they have.
class ArticleRule : public Rule
{
public:
    /// `lexicon` must outlive the rule.
    explicit ArticleRule(const Lexicon &lexicon)
        : m_lexicon(lexicon)
    {
    }

    void check(const Document &document, EditList &edits) const override;

private:
    const Lexicon &m_lexicon;
};

} // namespace offline
