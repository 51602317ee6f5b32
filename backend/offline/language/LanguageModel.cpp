// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/language/LanguageModel.h"

#include "backend/offline/language/Arrays.h"
#include "backend/offline/language/ModelFormat.h"

#include <algorithm>

// The compiled model, as data of the program: the system loads the parts of it
// that are read, and shares them among processes.
asm(".section .rodata\n"
    ".balign 8\n"
    ".global quilletEnglishModel\n"
    "quilletEnglishModel:\n"
    ".incbin \"" QUILLET_ENGLISH_MODEL "\"\n"
    ".balign 8\n"
    ".section .note.GNU-stack,\"\",@progbits\n"
    ".text\n");
extern "C" const char quilletEnglishModel[];

namespace offline
{

namespace
{

/// What a word that the model lacks counts as: rarer than nearly all it has.
constexpr float rareWord = -7.2F;

} // namespace

LanguageModel::LanguageModel()
{
    Arrays arrays(quilletEnglishModel);
    const auto &header = *arrays.take<model::Header>(1);
    m_words = header.words;
    m_nameStarts = arrays.take<uint32_t>(header.words + 1);
    m_firstPair = arrays.take<uint32_t>(header.words + 1);
    m_names = arrays.take<char>(header.letters);
    m_wordProbability = arrays.take<uint8_t>(header.words);
    m_wordBackoff = arrays.take<uint8_t>(header.words);
    m_pairWord = arrays.take<uint16_t>(header.pairs);
    m_pairProbability = arrays.take<uint8_t>(header.pairs);
    m_pairBackoff = arrays.take<uint8_t>(header.pairs);
    m_firstTriple = arrays.take<uint8_t>(3 * (size_t(header.pairs) + 1));
    m_tripleWord = arrays.take<uint16_t>(header.triples);
    m_tripleProbability = arrays.take<uint8_t>(header.triples);
    m_start = idOf(u"<s>");
    m_end = idOf(u"</s>");
}

LanguageModel::WordId LanguageModel::idOf(QStringView lower) const
{
    const int place = placeOf(lower, m_names, m_nameStarts, m_words);
    return place < 0 ? unknown : WordId(place);
}

float LanguageModel::wordProbability(WordId word) const
{
    return word == unknown ? rareWord : model::unpackProbability(m_wordProbability[word]);
}

LanguageModel::Pair LanguageModel::pairOf(WordId word, WordId before) const
{
    if (word == unknown || before == unknown)
        return {0, false};
    const uint16_t *begin = m_pairWord + m_firstPair[word];
    const uint16_t *end = m_pairWord + m_firstPair[word + 1];
    const uint16_t *place = std::lower_bound(begin, end, before);
    return {uint32_t(place - m_pairWord), place != end && *place == before};
}

float LanguageModel::probability(WordId word, WordId second, WordId first) const
{
    const auto tripleStart = [this](uint32_t pair) {
        const uint8_t *bytes = m_firstTriple + size_t(pair) * 3;
        return uint32_t(bytes[0]) | uint32_t(bytes[1]) << 8 | uint32_t(bytes[2]) << 16;
    };
    const Pair pair = pairOf(word, second);
    if (pair.found && first != unknown) {
        const uint16_t *begin = m_tripleWord + tripleStart(pair.index);
        const uint16_t *end = m_tripleWord + tripleStart(pair.index + 1);
        const uint16_t *place = std::lower_bound(begin, end, first);
        if (place != end && *place == first)
            return model::unpackProbability(m_tripleProbability[place - m_tripleWord]);
    }
    float weight = 0;
    const Pair history = pairOf(second, first);
    if (history.found)
        weight += model::unpackBackoff(m_pairBackoff[history.index]);
    if (pair.found)
        return weight + model::unpackProbability(m_pairProbability[pair.index]);
    if (second != unknown)
        weight += model::unpackBackoff(m_wordBackoff[second]);
    return weight + wordProbability(word);
}

float LanguageModel::score(std::span<const WordId> words) const
{
    float sum = 0;
    for (size_t i = 2; i < words.size(); ++i)
        sum += probability(words[i], words[i - 1], words[i - 2]);
    return sum;
}

} // namespace offline
