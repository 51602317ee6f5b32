// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/Rule.h"
#include "backend/offline/words/Lexicon.h"

namespace offline
{

/// Spaces and punctuation between two words of a line: a space before a comma,
/// none after it, doubled spaces and commas. Indentation, columns, ellipses and
/// the two spaces that some writers put after a full stop stay.
class SpacingRule : public Rule
{
public:
    /// `lexicon` must outlive the rule.
    explicit SpacingRule(const Lexicon &lexicon)
        : m_lexicon(lexicon)
    {
    }

    void check(const Document &document, EditList &edits) const override;

private:
    QString corrected(QStringView gap, const Word &before, const Word &after, bool last) const;

    const Lexicon &m_lexicon;
};

} // namespace offline
