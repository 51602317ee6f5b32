// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/language/Tagger.h"

#include "backend/offline/language/Arrays.h"
#include "backend/offline/language/TagFormat.h"

#include <QHash>
#include <QStringList>

#include <algorithm>
#include <limits>

// The compiled tables, as data of the program.
asm(".section .rodata\n"
    ".balign 8\n"
    ".global quilletEnglishTags\n"
    "quilletEnglishTags:\n"
    ".incbin \"" QUILLET_ENGLISH_TAGS "\"\n"
    ".balign 8\n"
    ".text\n");
extern "C" const char quilletEnglishTags[];

namespace offline
{

namespace
{

static_assert(unsigned(Tag::Two) + 1 == tags::count);

/// What an ending says about a word that the lexicon lacks.
struct Ending {
    QStringView letters;
    Tag tags[3];
};
constexpr Ending endings[] = {
    {u"ing", {Tag::Vbg, Tag::Nn, Tag::Jj}}, {u"ed", {Tag::Vbd, Tag::Vbn, Tag::Jj}},
    {u"ly", {Tag::Rb, Tag::Rb, Tag::Jj}},   {u"ness", {Tag::Nn, Tag::Nn, Tag::Nn}},
    {u"ment", {Tag::Nn, Tag::Nn, Tag::Nn}}, {u"tion", {Tag::Nn, Tag::Nn, Tag::Nn}},
    {u"sion", {Tag::Nn, Tag::Nn, Tag::Nn}}, {u"ity", {Tag::Nn, Tag::Nn, Tag::Nn}},
    {u"ism", {Tag::Nn, Tag::Nn, Tag::Nn}},  {u"ous", {Tag::Jj, Tag::Jj, Tag::Jj}},
    {u"ful", {Tag::Jj, Tag::Jj, Tag::Nn}},  {u"less", {Tag::Jj, Tag::Jj, Tag::Jj}},
    {u"able", {Tag::Jj, Tag::Jj, Tag::Jj}}, {u"ible", {Tag::Jj, Tag::Jj, Tag::Jj}},
    {u"ive", {Tag::Jj, Tag::Jj, Tag::Nn}},  {u"ic", {Tag::Jj, Tag::Jj, Tag::Nn}},
    {u"al", {Tag::Jj, Tag::Jj, Tag::Nn}},   {u"ish", {Tag::Jj, Tag::Jj, Tag::Nn}},
    {u"ss", {Tag::Nn, Tag::Nn, Tag::Jj}},   {u"us", {Tag::Nn, Tag::Nn, Tag::Jj}},
    {u"s", {Tag::Nns, Tag::Nns, Tag::Vbz}}, {u"er", {Tag::Nn, Tag::Nn, Tag::Jjr}},
    {u"", {Tag::Nn, Tag::Jj, Tag::Vb}},
};

/// An unknown word is about as rare as the rarest of the lexicon.
constexpr float unknownWord = -5.2F;

/// The tag of a contraction without the ending that it shares with others:
/// "they're" behaves as its verb does towards what follows.
const QHash<QString, Tag> &contractions()
{
    static const QHash<QString, Tag> result = [] {
        QHash<QString, Tag> found;
        const auto add = [&found](const char *words, Tag tag) {
            for (const QString &word : QString::fromLatin1(words).split(u' '))
                found.insert(word, tag);
        };
        add("can't couldn't won't wouldn't shouldn't mustn't mightn't i'll you'll he'll she'll "
            "it'll "
            "we'll they'll that'll there'll i'd you'd he'd she'd we'd they'd cannot",
            Tag::Md);
        add("don't aren't haven't i'm you're we're they're i've you've we've they've", Tag::Vbp);
        add("doesn't isn't hasn't it's that's he's she's there's what's who's where's here's",
            Tag::Vbz);
        add("didn't wasn't weren't hadn't", Tag::Vbd);
        return found;
    }();
    return result;
}

} // namespace

Tagger::Tagger()
{
    Arrays arrays(quilletEnglishTags);
    const auto &header = *arrays.take<tags::Header>(1);
    m_words = header.words;
    m_transitions = arrays.take<uint8_t>(tags::count * tags::count * tags::count);
    m_nameStarts = arrays.take<uint32_t>(header.words + 1);
    m_names = arrays.take<char>(header.letters);
    m_firstEntry = arrays.take<uint32_t>(header.words + 1);
    m_entryTag = arrays.take<uint8_t>(header.entries);
    m_entryProbability = arrays.take<uint8_t>(header.entries);
}

int Tagger::lookUp(QStringView lower) const
{
    return placeOf(lower, m_names, m_nameStarts, m_words);
}

TagSet Tagger::possible(QStringView lower) const
{
    TagSet result;
    const int place = lookUp(lower);
    if (place < 0)
        return result;
    // The lexicon was counted, and has the mistakes of its source: what is a
    // hundred times rarer than the word's usual part of speech is left out.
    const uint32_t first = m_firstEntry[place];
    const uint32_t end = m_firstEntry[place + 1];
    const uint8_t best = *std::min_element(m_entryProbability + first, m_entryProbability + end);
    for (uint32_t i = first; i < end; ++i) {
        if (m_entryProbability[i] <= best + 2 * tags::steps)
            result.add(Tag(m_entryTag[i]));
    }
    return result;
}

float Tagger::transition(Tag first, Tag second, Tag third) const
{
    const size_t index =
        (size_t(first) * tags::count + size_t(second)) * tags::count + size_t(third);
    return -float(m_transitions[index]) / tags::steps;
}

std::vector<Tagger::Choice> Tagger::choices(const Document &document, int index) const
{
    const Word &word = document.word(index);
    if (word.lower.isEmpty()) {
        const QChar first = document.text().at(word.start);
        return {{first.isDigit() ? Tag::Cd : Tag::Nnp, 0}};
    }
    const auto contraction = contractions().constFind(word.lower);
    if (contraction != contractions().constEnd())
        return {{*contraction, 0}};
    const bool name = word.letters != LetterCase::Lower && !document.isFirstOfSentence(index);
    const int place = lookUp(word.lower);
    std::vector<Choice> result;
    if (place >= 0) {
        for (uint32_t i = m_firstEntry[place]; i < m_firstEntry[place + 1]; ++i) {
            const auto tag = Tag(m_entryTag[i]);
            float probability = -float(m_entryProbability[i]) / tags::steps;
            // The lexicon does not tell capitals: a name is written with one.
            if (tag == Tag::Nnp || tag == Tag::Nnps)
                probability += name ? 1.0F : -2.0F;
            result.push_back({tag, probability});
        }
        return result;
    }
    if (word.lower.endsWith(u"'s") || word.lower.endsWith(u"s'"))
        return {{Tag::Pos, 0}};
    if (name)
        return {{Tag::Nnp, 0}};
    const auto *ending = std::find_if(std::begin(endings), std::end(endings), [&](const Ending &e) {
        return word.lower.endsWith(e.letters);
    });
    for (const Tag tag : ending->tags)
        result.push_back({tag, unknownWord});
    return result;
}

/// Viterbi's algorithm over pairs of tags.
void Tagger::tagClause(const Document &document, int first, int end, std::vector<Tag> &tags) const
{
    struct State {
        Tag before;
        Tag tag;
        float probability;
        int from; ///< in the column before
    };
    std::vector<std::vector<State>> columns;
    columns.push_back({{Tag::Punc, Tag::Punc, 0, -1}});
    for (int i = first; i < end; ++i) {
        std::vector<State> column;
        for (const Choice &choice : choices(document, i)) {
            // One state for each tag before: the best way to it.
            const std::vector<State> &last = columns.back();
            for (int from = 0; from < int(last.size()); ++from) {
                const State &state = last[size_t(from)];
                const float probability = state.probability + choice.probability +
                                          transition(state.before, state.tag, choice.tag);
                const auto same = std::find_if(column.begin(), column.end(), [&](const State &s) {
                    return s.tag == choice.tag && s.before == state.tag;
                });
                if (same == column.end())
                    column.push_back({state.tag, choice.tag, probability, from});
                else if (probability > same->probability)
                    *same = {state.tag, choice.tag, probability, from};
            }
        }
        columns.push_back(std::move(column));
    }
    float best = -std::numeric_limits<float>::infinity();
    int at = 0;
    for (int i = 0; i < int(columns.back().size()); ++i) {
        const State &state = columns.back()[size_t(i)];
        const float probability =
            state.probability + transition(state.before, state.tag, Tag::Punc);
        if (probability > best) {
            best = probability;
            at = i;
        }
    }
    for (size_t column = columns.size() - 1; column > 0; --column) {
        tags[size_t(first) + column - 1] = columns[column][size_t(at)].tag;
        at = columns[column][size_t(at)].from;
    }
}

std::vector<Tag> Tagger::tags(const Document &document) const
{
    std::vector<Tag> result(document.words().size(), Tag::Punc);
    for (const Sentence &sentence : document.sentences()) {
        if (!sentence.english)
            continue;
        // Punctuation parts a sentence.
        int first = sentence.first;
        for (int i = sentence.first + 1; i <= sentence.end; ++i) {
            if (i == sentence.end || !document.word(i).joined) {
                tagClause(document, first, i, result);
                first = i;
            }
        }
    }
    return result;
}

} // namespace offline
