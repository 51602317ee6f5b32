// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/Rule.h"
#include "backend/offline/words/Dictionary.h"
#include "backend/offline/words/LanguageDetector.h"
#include "backend/offline/words/Lexicon.h"

#include <QHash>

#include <memory>
#include <mutex>

namespace offline
{

/// Misspelt words of sentences in languages other than English, where a Hunspell
/// dictionary for the language is installed; in German also nouns without their
/// capital and "das" for "dass". Only what is one letter away from one known word
/// is changed. Each sentence has its own language; English words in it, names and
/// capitals stay.
class OtherLanguagesRule : public Rule
{
public:
    /// The arguments must outlive the rule.
    OtherLanguagesRule(const Lexicon &lexicon, const LanguageDetector &detector)
        : m_lexicon(lexicon)
        , m_detector(detector)
    {
    }

    void check(const Document &document, EditList &edits) const override;

private:
    Dictionary *dictionaryOf(const QString &language) const;
    QString correction(Dictionary &dictionary, const QString &language, const QString &word) const;

    const Lexicon &m_lexicon;
    const LanguageDetector &m_detector;
    mutable std::mutex m_mutex;
    mutable QHash<QString, std::shared_ptr<Dictionary>> m_dictionaries; ///< by language
};

} // namespace offline
