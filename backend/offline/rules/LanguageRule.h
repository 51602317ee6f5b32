// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/language/Context.h"
#include "backend/offline/language/Tagger.h"
#include "backend/offline/text/Document.h"
#include "backend/offline/text/Edit.h"
#include "backend/offline/words/Inflections.h"

#include <vector>

namespace offline
{

/// A document with what the tagger and the language model say about it.
struct Analysis {
    const Document &document;
    const Context &context;
    const std::vector<Tag> &tags; ///< of the document's words
    const Inflections &inflections;

    Tag tag(int index) const { return tags[size_t(index)]; }
    const QString &lower(int index) const { return document.word(index).lower; }

    /// Whether both words are of one sentence and only white space parts them.
    bool joins(int index) const
    {
        return index > 0 && index < int(tags.size()) && document.word(index).joined;
    }
    /// Whether a rule may change the word: prose in English, and not shouted or
    /// spelt in a way of its own.
    bool mayChange(int index) const
    {
        const Word &word = document.word(index);
        return !word.lower.isEmpty() && !word.hyphenated &&
               (word.letters == LetterCase::Lower || word.letters == LetterCase::Capital) &&
               document.isEnglish(word) && !document.isMentioned(index);
    }

    /// Replaces one word by another in its case.
    void replaceWord(EditList &edits, int index, const QString &replacement) const
    {
        const Word &word = document.word(index);
        edits.replace(
            word.start, word.length,
            inCaseOf(QStringView(document.text()).mid(word.start, word.length), replacement));
    }
};

/// A rule that knows parts of speech and asks the language model: it changes a
/// place only when the sentence becomes clearly more likely. Constant after
/// construction; any thread may use it.
class LanguageRule
{
public:
    LanguageRule() = default;
    LanguageRule(const LanguageRule &) = delete;
    LanguageRule &operator=(const LanguageRule &) = delete;
    virtual ~LanguageRule() = default;

    virtual void check(const Analysis &analysis, EditList &edits) const = 0;
};

} // namespace offline
