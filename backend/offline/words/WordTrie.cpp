// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/words/WordTrie.h"

#include "backend/offline/text/Letters.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace offline
{

namespace
{

constexpr int maxWordLength = 24;
constexpr int shortestCorrected = 3;

// Costs of the mistakes, in tenths of an arbitrary letter.
constexpr int arbitrary = 11;
constexpr int swapped = 6;
constexpr int doubling = 5;
constexpr int silentLetter = 8;
constexpr int vowelForVowel = 7;
constexpr int soundAlike = 7;
constexpr int neighbouringKey = 8;
constexpr int rarity = 2;  // for each level below the most common ...
constexpr int rarest = 10; // ... in the comparison of candidates not below this many
constexpr size_t maxCandidates = 12;
constexpr int longWord = 7;
constexpr int commonWord = 8;
constexpr int veryLongWord = 9; // may hold three small mistakes: "imidiatly"

bool isVowel(char c)
{
    return std::strchr("aeiouy", c) != nullptr;
}

int substitution(char a, char b)
{
    static constexpr const char *alike[] = {"ck", "cs", "sz", "kq", "fv", "dt", "mn"};
    static constexpr const char *rows[] = {"qwertyuiop", "asdfghjkl", "zxcvbnm"};
    if (isVowel(a) && isVowel(b))
        return vowelForVowel;
    for (const char *pair : alike) {
        if ((pair[0] == a && pair[1] == b) || (pair[0] == b && pair[1] == a))
            return soundAlike;
    }
    for (const char *row : rows) {
        const char *left = std::strchr(row, a);
        const char *right = std::strchr(row, b);
        if (left && right && std::abs(left - right) == 1)
            return neighbouringKey;
    }
    return arbitrary;
}

/// Substitution costs of all letter pairs, worked out once.
struct SubstitutionTable {
    std::array<std::array<qint8, 26>, 26> cost;
    SubstitutionTable()
    {
        for (char a = 'a'; a <= 'z'; ++a) {
            for (char b = 'a'; b <= 'z'; ++b)
                cost[a - 'a'][b - 'a'] = qint8(a == b ? 0 : substitution(a, b));
        }
    }
};

int looseLetter(char letter, char before)
{
    if (letter == before)
        return doubling;
    return isVowel(letter) || letter == 'h' ? silentLetter : arbitrary;
}

} // namespace

/// One search: rows of the edit-distance table, one for each letter of the path
/// from the root, and the best candidates so far.
struct WordTrie::Search {
    using Row = std::array<int, maxWordLength + 2>;

    char word[maxWordLength + 1] = {};
    int length = 0;
    int limit = 0;
    std::array<Row, maxWordLength + 4> rows;
    char path[maxWordLength + 4] = {};
    std::vector<Candidate> best; ///< the best first

    static int score(int cost, int level) { return cost + std::min(15 - level, rarest) * rarity; }

    void offer(int cost, int level, int depth)
    {
        // Writers rarely miss the first letter; where it differs, it is a name.
        // In a long and common word it may be another vowel: "inviroment".
        const bool swappedStart = path[0] == word[1] && path[1] == word[0];
        const bool otherVowel =
            isVowel(path[0]) && isVowel(word[0]) && length >= longWord && level >= commonWord;
        if (path[0] != word[0] && !swappedStart && !otherVowel)
            return;
        const auto worse = [&](const Candidate &other) {
            return score(cost, level) < score(other.cost, other.level);
        };
        const auto place = std::find_if(best.begin(), best.end(), worse);
        if (place == best.end() && best.size() >= maxCandidates)
            return;
        best.insert(place, Candidate{QString::fromLatin1(path, depth), cost, level});
        if (best.size() > maxCandidates)
            best.pop_back();
    }
};

void WordTrie::load(QByteArrayView list)
{
    m_nodes.assign(1, Node{0});
    m_nodes.reserve(160'000);
    char word[maxWordLength + 1] = {};
    qsizetype at = 0;
    while (at < list.size()) {
        int level = 0;
        while (at < list.size() && list[at] != ' ')
            level = level * 10 + (list[at++] - '0');
        ++at;
        while (at < list.size() && list[at] != '\n') {
            qsizetype length = list[at++] - 'A';
            while (at < list.size() && isAsciiLower(QLatin1Char(list[at])))
                word[length++] = list[at++];
            insert(word, length, level);
        }
        ++at;
    }
}

void WordTrie::insert(const char *word, qsizetype length, int level)
{
    qint32 node = 0;
    for (qsizetype i = 0; i < length; ++i) {
        qint32 next = childOf(node, word[i]);
        if (next == 0) {
            next = qint32(m_nodes.size());
            Node added{word[i]};
            added.sibling = m_nodes[size_t(node)].child;
            m_nodes.push_back(added);
            m_nodes[size_t(node)].child = next;
        }
        node = next;
    }
    m_nodes[size_t(node)].level = qint8(level);
}

qint32 WordTrie::childOf(qint32 node, char letter) const
{
    qint32 child = m_nodes[size_t(node)].child;
    while (child != 0 && m_nodes[size_t(child)].letter != letter)
        child = m_nodes[size_t(child)].sibling;
    return child;
}

int WordTrie::level(QStringView word) const
{
    if (word.isEmpty() || word.size() > maxWordLength || m_nodes.empty())
        return -1;
    qint32 node = 0;
    for (const QChar c : word) {
        if (!isAsciiLower(c))
            return -1;
        node = childOf(node, char(c.unicode()));
        if (node == 0)
            return -1;
    }
    return m_nodes[size_t(node)].level;
}

std::vector<WordTrie::Candidate> WordTrie::candidates(QStringView misspelling) const
{
    if (misspelling.size() < shortestCorrected || misspelling.size() > maxWordLength ||
        m_nodes.empty())
        return {};
    Search search;
    for (const QChar c : misspelling) {
        if (!isAsciiLower(c))
            return {};
        search.word[search.length++] = char(c.unicode());
    }
    // Short words have many neighbours: there only the commonest slips count.
    search.limit = search.length <= 4             ? silentLetter
                   : search.length <= 5           ? arbitrary
                   : search.length <= 7           ? 2 * vowelForVowel
                   : search.length < veryLongWord ? arbitrary + silentLetter
                                                  : 3 * vowelForVowel;
    search.rows[0][0] = 0;
    for (int j = 1; j <= search.length; ++j) {
        search.rows[0][j] = search.rows[0][j - 1] +
                            looseLetter(search.word[j - 1], j > 1 ? search.word[j - 2] : '\0');
    }
    descend(search, 0, 0);
    return std::move(search.best);
}

void WordTrie::descend(Search &search, qint32 node, int depth) const
{
    static const SubstitutionTable substitutions;
    if (depth >= maxWordLength)
        return;
    for (qint32 child = m_nodes[size_t(node)].child; child != 0;
         child = m_nodes[size_t(child)].sibling) {
        const char letter = m_nodes[size_t(child)].letter;
        const char before = depth > 0 ? search.path[depth - 1] : '\0';
        search.path[depth] = letter;
        const Search::Row &last = search.rows[size_t(depth)];
        Search::Row &row = search.rows[size_t(depth) + 1];
        row[0] = last[0] + looseLetter(letter, before);
        int least = row[0];
        for (int j = 1; j <= search.length; ++j) {
            const char typed = search.word[j - 1];
            const char typedBefore = j > 1 ? search.word[j - 2] : '\0';
            int cost =
                last[size_t(j) - 1] + substitutions.cost[size_t(letter - 'a')][size_t(typed - 'a')];
            cost = std::min(cost, last[size_t(j)] + looseLetter(letter, before));
            // "ccache": a doubled first letter is meant
            const bool doubledStart = j == 2 && typed == typedBefore;
            const int loose = doubledStart ? search.limit + 1 : looseLetter(typed, typedBefore);
            cost = std::min(cost, row[size_t(j) - 1] + loose);
            if (j > 1 && depth > 0 && typed == before && typedBefore == letter && typed != letter)
                cost = std::min(cost, search.rows[size_t(depth) - 1][size_t(j) - 2] + swapped);
            row[size_t(j)] = cost;
            least = std::min(least, cost);
        }
        if (least > search.limit)
            continue;
        const Node &here = m_nodes[size_t(child)];
        if (here.level >= 0 && row[size_t(search.length)] <= search.limit)
            search.offer(row[size_t(search.length)], here.level, depth + 1);
        if (here.child != 0)
            descend(search, child, depth + 1);
    }
}

} // namespace offline
