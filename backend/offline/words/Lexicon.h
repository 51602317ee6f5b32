// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/words/WordTrie.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <memory>
#include <mutex>

namespace offline
{

/// What the engine knows about English words: the Hunspell dictionaries, the
/// list of common words, and a list of common misspellings. Loads on first use,
/// which any thread may make; constant afterwards.
class Lexicon
{
public:
    /// `dictionaries` is the folder with "en_US.aff", "en_US.dic" and, if it is
    /// there, the British pair.
    explicit Lexicon(const QString &dictionaries);
    ~Lexicon();

    /// The folder of the dictionaries.
    const QString &dictionaries() const { return m_dictionaries; }

    /// Loads everything now instead of with the first question.
    void load() const;

    /// Whether a word in lower case (straight apostrophes) is an English word.
    bool knows(const QString &lower) const;

    /// Whether the dictionaries know a lower-case word only with a capital: "paris".
    bool isName(const QString &lower) const;

    /// How common a lower-case word is: 15 to 0, -1 for not in the list.
    int level(QStringView lower) const;

    /// The words that an unknown lower-case word may stand for, the best first;
    /// none for one that a writer may have built on purpose. A common misspelling
    /// has only its right form, of no cost.
    std::vector<WordTrie::Candidate> candidates(const QString &lower) const;

    /// Whether the word stands in the list of common misspellings.
    bool isCommonMisspelling(const QString &lower) const;

private:
    struct Data;
    const Data &data() const;
    bool isCompound(const QString &lower) const;

    QString m_dictionaries;
    mutable std::once_flag m_once;
    mutable std::unique_ptr<Data> m_data;
};

} // namespace offline
