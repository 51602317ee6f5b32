// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QStringView>

#include <cstdint>
#include <span>

namespace offline
{

/// How likely English words are after one another: a model of three words with
/// back-off (Katz 1987), built into the program and paged in as it is read.
/// Constant; any thread may use it.
class LanguageModel
{
public:
    using WordId = uint16_t;
    static constexpr WordId unknown = 0xFFFF;

    LanguageModel();

    WordId sentenceStart() const { return m_start; }
    WordId sentenceEnd() const { return m_end; }

    /// Of a word in lower case with straight apostrophes; `unknown` for a word
    /// that the model does not have.
    WordId idOf(QStringView lower) const;
    bool knows(QStringView lower) const { return idOf(lower) != unknown; }

    /// The decimal logarithm of the word's share of all words; for an unknown
    /// word that of a rare one.
    float wordProbability(WordId word) const;

    /// The decimal logarithm of the probability of `word` after `first second`.
    float probability(WordId word, WordId second, WordId first) const;

    /// The sum over `words`, beginning with the third, each after the two before
    /// it.
    float score(std::span<const WordId> words) const;

private:
    struct Pair {
        uint32_t index;
        bool found;
    };
    Pair pairOf(WordId word, WordId before) const;

    uint32_t m_words = 0;
    const uint32_t *m_nameStarts;
    const uint32_t *m_firstPair;
    const char *m_names;
    const uint8_t *m_wordProbability;
    const uint8_t *m_wordBackoff;
    const uint16_t *m_pairWord;
    const uint8_t *m_pairProbability;
    const uint8_t *m_pairBackoff;
    const uint8_t *m_firstTriple;
    const uint16_t *m_tripleWord;
    const uint8_t *m_tripleProbability;
    WordId m_start = unknown;
    WordId m_end = unknown;
};

} // namespace offline
