// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/language/LanguageModel.h"
#include "backend/offline/text/Document.h"

#include <QStringList>

#include <vector>

namespace offline
{

/// What the language model says to changes in a document. One thread at a time;
/// the arguments must outlive it.
class Context
{
public:
    Context(const LanguageModel &model, const Document &document);

    /// By how many factors of ten the sentence becomes more likely when the words
    /// from `first` on, `count` of them, are replaced by `words` (lower case; none
    /// to take them away). All the words must be of one sentence.
    float gain(int first, int count, const QStringList &words) const;

    /// The decimal logarithm of the probability of `words` in that place, with
    /// the two words that follow.
    float score(int first, int count, const QStringList &words) const;

private:
    using WordId = LanguageModel::WordId;

    float score(const Sentence &sentence, int first, int count,
                const std::vector<WordId> &words) const;

    const LanguageModel &m_model;
    const Document &m_document;
    std::vector<WordId> m_ids; ///< of the document's words
};

} // namespace offline
