// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Runs while Quillet is built: makes the compact language model that the program
// carries from the model of the package pocketsphinx-en-us.
//
//   compile_model en-us.lm.bin english.model
//
// Input: a trie of three orders, the word to predict first, then the word before
// it, then the one before that. Records are packed bit by bit; probabilities are
// indices into tables of logarithms to the base 1.0001.
// Output: see ModelFormat.h.

#include "backend/offline/language/ModelFormat.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <numeric>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace
{

using offline::model::Header;

constexpr size_t binCount = 1 << 16;

class Input
{
public:
    explicit Input(const char *path)
    {
        std::ifstream file(path, std::ios::binary);
        m_bytes.assign(std::istreambuf_iterator<char>(file), {});
        // A record may be read past the end by as many bytes as one word has.
        m_size = m_bytes.size();
        m_bytes.resize(m_size + 8);
    }

    template <typename T> T number()
    {
        T result;
        std::memcpy(&result, take(sizeof(T)), sizeof(T));
        return result;
    }

    const char *take(size_t size)
    {
        if (size > m_size - m_at)
            throw std::runtime_error("the language model is cut off");
        const char *start = m_bytes.data() + m_at;
        m_at += size;
        return start;
    }

private:
    std::string m_bytes;
    size_t m_size = 0;
    size_t m_at = 0;
};

int bitsFor(uint32_t largest)
{
    int bits = 1;
    while (largest >>= 1)
        ++bits;
    return bits;
}

/// Records of `width` bits each, one after the other.
class Records
{
public:
    Records(Input &input, size_t count, int width)
        : m_width(size_t(width))
        , m_bytes(input.take(((1 + count) * m_width + 7) / 8 + sizeof(uint64_t)))
    {
    }

    uint32_t field(size_t record, int offset, int width) const
    {
        const size_t bit = record * m_width + size_t(offset);
        uint64_t bits;
        std::memcpy(&bits, m_bytes + bit / 8, sizeof(bits));
        return uint32_t((bits >> (bit % 8)) & ((uint64_t(1) << width) - 1));
    }

private:
    size_t m_width;
    const char *m_bytes;
};

struct Unigram {
    float probability;
    float backoff;
    uint32_t firstBigram;
};

/// Of base 1.0001 in the input, of base 10 here.
float toLog10(float value)
{
    static const double factor = std::log10(1.0001);
    return float(double(value) * factor);
}

class Output
{
public:
    explicit Output(const char *path)
        : m_file(path, std::ios::binary)
    {
    }

    template <typename T> void write(const std::vector<T> &values)
    {
        m_file.write(reinterpret_cast<const char *>(values.data()),
                     std::streamsize(values.size() * sizeof(T)));
        // Every array starts at a multiple of eight bytes.
        m_written += values.size() * sizeof(T);
        while (m_written % 8 != 0) {
            m_file.put(0);
            ++m_written;
        }
    }

    bool close()
    {
        m_file.close();
        return bool(m_file);
    }

private:
    std::ofstream m_file;
    size_t m_written = 0;
};

void compile(const char *from, const char *to)
{
    constexpr std::string_view title = "Trie Language Model";
    Input input(from);
    if (std::string_view(input.take(title.size()), title.size()) != title ||
        input.number<uint8_t>() != 3)
        throw std::runtime_error("not a language model of three orders");
    std::array<uint32_t, 3> counts{};
    for (uint32_t &count : counts)
        count = input.number<uint32_t>();
    input.number<int32_t>(); // the kind of the tables
    std::vector<float> bins(3 * binCount);
    for (float &bin : bins)
        bin = input.number<float>();
    std::vector<Unigram> unigrams(counts[0] + 1);
    for (Unigram &unigram : unigrams)
        unigram = input.number<Unigram>();
    const int wordBits = bitsFor(counts[0]);
    const int nextBits = bitsFor(counts[2]);
    const Records bigrams(input, counts[1], wordBits + 32 + nextBits);
    const Records trigrams(input, counts[2], wordBits + 16);
    std::vector<std::string> words(counts[0]);
    const auto length = input.number<uint32_t>();
    const char *name = input.take(length);
    for (std::string &word : words) {
        word = name;
        name += word.size() + 1;
    }

    // The commonest words that 16 bits can number keep their order, which is that
    // of the alphabet.
    std::vector<uint32_t> byRank(counts[0]);
    std::iota(byRank.begin(), byRank.end(), 0);
    std::stable_sort(byRank.begin(), byRank.end(), [&](uint32_t a, uint32_t b) {
        const auto rank = [&](uint32_t id) {
            return words[id].front() == '<' ? 1.0F : unigrams[id].probability;
        };
        return rank(a) > rank(b);
    });
    byRank.resize(std::min<size_t>(byRank.size(), offline::model::maxWords));
    std::sort(byRank.begin(), byRank.end(),
              [&](uint32_t a, uint32_t b) { return words[a] < words[b]; });
    std::vector<uint16_t> newId(counts[0], offline::model::unknownWord);
    for (size_t i = 0; i < byRank.size(); ++i)
        newId[byRank[i]] = uint16_t(i);

    // What the model says nearly as well without an entry is left out.
    constexpr float negligible = 0.2F;
    std::unordered_map<uint64_t, std::pair<float, float>> pairs;
    pairs.reserve(counts[1]);
    const auto key = [](uint32_t word, uint32_t before) { return uint64_t(word) << 32 | before; };
    for (uint32_t word = 0; word < counts[0]; ++word) {
        for (uint32_t b = unigrams[word].firstBigram; b < unigrams[word + 1].firstBigram; ++b)
            pairs[key(word, bigrams.field(b, 0, wordBits))] = {
                toLog10(bins[bigrams.field(b, wordBits + 16, 16)]),
                toLog10(bins[binCount + bigrams.field(b, wordBits, 16)])};
    }

    std::vector<uint32_t> nameStarts{0};
    std::vector<char> names;
    std::vector<uint8_t> wordProbability, wordBackoff, pairProbability, pairBackoff,
        tripleProbability;
    std::vector<uint32_t> firstPair{0};
    std::vector<uint16_t> pairWord, tripleWord;
    std::vector<uint32_t> firstTriple{0};
    for (const uint32_t old : byRank) {
        names.insert(names.end(), words[old].begin(), words[old].end());
        nameStarts.push_back(uint32_t(names.size()));
        wordProbability.push_back(
            offline::model::packProbability(toLog10(unigrams[old].probability)));
        wordBackoff.push_back(offline::model::packBackoff(toLog10(unigrams[old].backoff)));
        for (uint32_t b = unigrams[old].firstBigram; b < unigrams[old + 1].firstBigram; ++b) {
            const uint16_t before = newId[bigrams.field(b, 0, wordBits)];
            if (before == offline::model::unknownWord)
                continue;
            const uint32_t oldBefore = bigrams.field(b, 0, wordBits);
            const auto [probability, backoff] = pairs[key(old, oldBefore)];
            const uint32_t end = bigrams.field(b + 1, wordBits + 32, nextBits);
            const size_t triples = tripleWord.size();
            for (uint32_t t = bigrams.field(b, wordBits + 32, nextBits); t < end; ++t) {
                const uint32_t oldFirst = trigrams.field(t, 0, wordBits);
                if (newId[oldFirst] == offline::model::unknownWord)
                    continue;
                const float own = toLog10(bins[2 * binCount + trigrams.field(t, wordBits, 16)]);
                const auto history = pairs.find(key(oldBefore, oldFirst));
                const float shorter =
                    probability + (history == pairs.end() ? 0 : history->second.second);
                if (std::abs(own - shorter) < negligible)
                    continue;
                tripleWord.push_back(newId[oldFirst]);
                tripleProbability.push_back(offline::model::packProbability(own));
            }
            const float shorter =
                toLog10(unigrams[old].probability) + toLog10(unigrams[oldBefore].backoff);
            if (triples == tripleWord.size() && std::abs(probability - shorter) < negligible &&
                std::abs(backoff) < negligible)
                continue;
            pairWord.push_back(before);
            pairBackoff.push_back(offline::model::packBackoff(backoff));
            pairProbability.push_back(offline::model::packProbability(probability));
            firstTriple.push_back(uint32_t(tripleWord.size()));
        }
        firstPair.push_back(uint32_t(pairWord.size()));
    }
    // Three bytes hold the place of a triple; the last one closes the array.
    std::vector<uint8_t> packedFirstTriple;
    packedFirstTriple.reserve(3 * firstTriple.size());
    for (const uint32_t place : firstTriple) {
        for (int shift = 0; shift < 24; shift += 8)
            packedFirstTriple.push_back(uint8_t(place >> shift));
    }

    Header header{};
    std::memcpy(header.magic, offline::model::magic, sizeof(header.magic));
    header.words = uint32_t(byRank.size());
    header.letters = uint32_t(names.size());
    header.pairs = uint32_t(pairWord.size());
    header.triples = uint32_t(tripleWord.size());
    Output output(to);
    output.write(std::vector<Header>{header});
    output.write(nameStarts);
    output.write(firstPair);
    output.write(names);
    output.write(wordProbability);
    output.write(wordBackoff);
    output.write(pairWord);
    output.write(pairProbability);
    output.write(pairBackoff);
    output.write(packedFirstTriple);
    output.write(tripleWord);
    output.write(tripleProbability);
    if (!output.close())
        throw std::runtime_error("the compact model cannot be written");
}

} // namespace

int main(int argc, char **argv)
{
    try {
        if (argc != 3)
            throw std::runtime_error("usage: compile_model en-us.lm.bin english.model");
        compile(argv[1], argv[2]);
    } catch (const std::exception &error) {
        std::cerr << "compile_model: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
