// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/text/Document.h"

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace offline
{

/// The part of speech of a word in its sentence, with the names of the Penn
/// Treebank: Nn a noun, Nns its plural, Vb a verb's base form, Vbd the past, Vbg
/// "-ing", Vbn the participle, Vbp the present, Vbz its third person. The order
/// is that of TagFormat.h.
enum class Tag : uint8_t {
    Nn,
    Punc,
    Nnp,
    Dt,
    In,
    Jj,
    Nns,
    Cd,
    Rb,
    Vbd,
    Vb,
    Prp,
    Cc,
    Of,
    To,
    Vbz,
    Vbn,
    Vbg,
    Vbp,
    Md,
    Pos,
    Wdt,
    Jjr,
    Wp,
    Nnps,
    Wrb,
    Jjs,
    Rbr,
    Rp,
    Ex,
    Rbs,
    Pdt,
    Fw,
    One,
    Uh,
    Sym,
    Ls,
    Two
};

/// A set of tags.
class TagSet
{
public:
    constexpr TagSet() = default;
    constexpr TagSet(std::initializer_list<Tag> tags)
    {
        for (const Tag tag : tags)
            add(tag);
    }
    constexpr void add(Tag tag) { m_bits |= uint64_t(1) << unsigned(tag); }
    constexpr bool has(Tag tag) const { return (m_bits >> unsigned(tag)) & 1; }
    constexpr bool hasAny(TagSet other) const { return (m_bits & other.m_bits) != 0; }
    constexpr bool isEmpty() const { return m_bits == 0; }

private:
    uint64_t m_bits = 0;
};

/// Finds the parts of speech of English words: a hidden Markov model of three
/// tags, solved with Viterbi's algorithm; words that its lexicon lacks are judged
/// by their ending. PartsOfSpeech.md says where the tables come from. Constant;
/// any thread may use it.
class Tagger
{
public:
    Tagger();

    /// One tag for each word of the document; Tag::Punc where it is not English.
    std::vector<Tag> tags(const Document &document) const;

    /// What a word in lower case can be; nothing for a word that the lexicon
    /// lacks.
    TagSet possible(QStringView lower) const;

private:
    struct Choice {
        Tag tag;
        float probability; ///< decimal logarithm of the word's share of the tag
    };
    std::vector<Choice> choices(const Document &document, int index) const;
    int lookUp(QStringView lower) const;
    float transition(Tag first, Tag second, Tag third) const;
    void tagClause(const Document &document, int first, int end, std::vector<Tag> &tags) const;

    uint32_t m_words;
    const uint8_t *m_transitions;
    const uint32_t *m_nameStarts;
    const char *m_names;
    const uint32_t *m_firstEntry;
    const uint8_t *m_entryTag;
    const uint8_t *m_entryProbability;
};

} // namespace offline
