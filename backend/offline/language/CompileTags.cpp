// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Runs while Quillet is built: makes the tables of the tagger from the lexicon and
// the tag frequencies of the package festlex-poslex.
//
//   compile_tags wsj.wp39.poslexR wsj.wp39.tri.ngrambin english.tags

#include "backend/offline/language/TagFormat.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using offline::tags::count;

std::string contents(const char *path)
{
    std::ifstream file(path, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(file), {});
    if (bytes.empty())
        throw std::runtime_error(std::string(path) + " cannot be read");
    return bytes;
}

uint8_t packed(double log10)
{
    return uint8_t(std::clamp(std::lround(-log10 * double(offline::tags::steps)), 0L, 255L));
}

int tagOf(const std::string &name)
{
    const auto *end = std::end(offline::tags::names);
    const auto *found = std::find(std::begin(offline::tags::names), end, name);
    return found == end ? -1 : int(found - std::begin(offline::tags::names));
}

/// Three lines of text (the last two name the tags), then how often each tag
/// follows each two: doubles, the most significant byte first. A negative number
/// -n stands for n - 1 more of the number before it.
std::vector<uint8_t> transitions(const std::string &bytes)
{
    size_t at = 0;
    for (int line = 0; line < 3; ++line)
        at = bytes.find('\n', at) + 1;
    std::vector<double> frequencies;
    for (; at + 8 <= bytes.size(); at += 8) {
        uint64_t bits = 0;
        for (size_t i = 0; i < 8; ++i)
            bits = bits << 8 | uint8_t(bytes[at + i]);
        const auto number = std::bit_cast<double>(bits);
        if (number < 0)
            frequencies.insert(frequencies.end(), size_t(-number) - 1, frequencies.back());
        else
            frequencies.push_back(number);
    }
    if (frequencies.size() != size_t(count) * count * count)
        throw std::runtime_error("the tag frequencies have another form");
    std::vector<uint8_t> result;
    result.reserve(frequencies.size());
    for (size_t row = 0; row < frequencies.size(); row += count) {
        double sum = 0;
        for (size_t i = 0; i < count; ++i)
            sum += frequencies[row + i];
        for (size_t i = 0; i < count; ++i)
            result.push_back(packed(std::log10((frequencies[row + i] + 0.01) / (sum + 1))));
    }
    return result;
}

using Entries = std::vector<std::pair<int, double>>;

/// Lines such as ("run" ((nn -8.489) (vb -5.824) ) () ), with natural logarithms.
std::map<std::string, Entries> lexicon(const std::string &text)
{
    std::map<std::string, Entries> words;
    size_t start = 0;
    while (start < text.size()) {
        const size_t end = std::min(text.find('\n', start), text.size());
        const std::string line = text.substr(start, end - start);
        start = end + 1;
        const size_t closing = line.rfind('"');
        if (!line.starts_with("(\"") || closing < 3)
            continue;
        const std::string word = line.substr(2, closing - 2);
        const bool letters = std::all_of(
            word.begin(), word.end(), [](char c) { return (c >= 'a' && c <= 'z') || c == '\''; });
        if (!letters)
            continue;
        Entries entries;
        for (size_t at = line.find('(', closing); at != std::string::npos;
             at = line.find('(', at + 1)) {
            const size_t space = line.find(' ', at);
            const int tag =
                space == std::string::npos ? -1 : tagOf(line.substr(at + 1, space - at - 1));
            if (tag < 0)
                continue;
            entries.emplace_back(tag, std::stod(line.substr(space + 1)) / std::log(10.0));
        }
        if (!entries.empty())
            words[word] = entries;
    }
    if (words.size() < 10'000)
        throw std::runtime_error("the lexicon has another form");
    return words;
}

template <typename T> void write(std::ofstream &file, const std::vector<T> &values)
{
    file.write(reinterpret_cast<const char *>(values.data()),
               std::streamsize(values.size() * sizeof(T)));
    while (file.tellp() % 8 != 0)
        file.put(0);
}

void compile(const char *lexiconPath, const char *frequencies, const char *to)
{
    const std::map<std::string, Entries> words = lexicon(contents(lexiconPath));
    std::vector<uint32_t> nameStarts{0};
    std::vector<uint32_t> firstEntry{0};
    std::vector<char> names;
    std::vector<uint8_t> tags;
    std::vector<uint8_t> probabilities;
    for (const auto &[word, entries] : words) {
        names.insert(names.end(), word.begin(), word.end());
        nameStarts.push_back(uint32_t(names.size()));
        for (const auto &[tag, probability] : entries) {
            tags.push_back(uint8_t(tag));
            probabilities.push_back(packed(probability));
        }
        firstEntry.push_back(uint32_t(tags.size()));
    }
    std::ofstream file(to, std::ios::binary);
    const offline::tags::Header header{uint32_t(words.size()), uint32_t(names.size()),
                                       uint32_t(tags.size()), 0};
    write(file, std::vector<offline::tags::Header>{header});
    write(file, transitions(contents(frequencies)));
    write(file, nameStarts);
    write(file, names);
    write(file, firstEntry);
    write(file, tags);
    write(file, probabilities);
    file.close();
    if (!file)
        throw std::runtime_error("the tables cannot be written");
}

} // namespace

int main(int argc, char **argv)
{
    try {
        if (argc != 4)
            throw std::runtime_error("usage: compile_tags LEXICON FREQUENCIES OUTPUT");
        compile(argv[1], argv[2], argv[3]);
    } catch (const std::exception &error) {
        std::cerr << "compile_tags: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
