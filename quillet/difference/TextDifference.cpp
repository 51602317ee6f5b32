// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/difference/TextDifference.h"

#include <QHash>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <vector>

// A library that finds the shortest difference takes quadratic time for texts that have little in
// common, such as a translation. Here, words that occur once on both sides divide the texts first,
// and only the short pieces between them are compared exhaustively.

namespace TextDifference
{

namespace
{

/// Pieces whose table would have more cells than this are divided further, or given up.
constexpr std::size_t maxTableCells = 250'000;

struct Word {
    qsizetype from;
    qsizetype length;
    /// Equal words have equal numbers.
    int number;
};

/// Two ranges of words, one of each text.
struct Piece {
    int oldFrom;
    int oldTo;
    int newFrom;
    int newTo;
};

using Match = std::pair<int, int>;

/// Words, signs and ideographs; white space only separates them.
std::vector<Word> wordsOf(QStringView text, QHash<QStringView, int> &numbers)
{
    std::vector<Word> words;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text.data(), text.size());
    for (qsizetype from = 0, to = 0; (to = finder.toNextBoundary()) != -1; from = to) {
        const QStringView word = text.sliced(from, to - from);
        if (word.trimmed().isEmpty())
            continue;
        const int number = numbers.value(word, static_cast<int>(numbers.size()));
        numbers.insert(word, number);
        words.push_back({from, to - from, number});
    }
    return words;
}

class Matcher
{
public:
    Matcher(const std::vector<Word> &before, const std::vector<Word> &after)
        : m_before(before)
        , m_after(after)
    {
        match({0, static_cast<int>(before.size()), 0, static_cast<int>(after.size())});
    }

    /// Pairs of equal words, in the order of both texts.
    const std::vector<Match> &matches() const { return m_matches; }

private:
    bool isSame(int i, int j) const
    {
        return m_before[size_t(i)].number == m_after[size_t(j)].number;
    }

    void match(Piece piece)
    {
        while (piece.oldFrom < piece.oldTo && piece.newFrom < piece.newTo &&
               isSame(piece.oldFrom, piece.newFrom))
            m_matches.emplace_back(piece.oldFrom++, piece.newFrom++);
        std::vector<Match> suffix;
        while (piece.oldFrom < piece.oldTo && piece.newFrom < piece.newTo &&
               isSame(piece.oldTo - 1, piece.newTo - 1))
            suffix.emplace_back(--piece.oldTo, --piece.newTo);
        matchMiddle(piece);
        m_matches.insert(m_matches.end(), suffix.rbegin(), suffix.rend());
    }

    void matchMiddle(const Piece &piece)
    {
        const auto oldCount = static_cast<std::size_t>(piece.oldTo - piece.oldFrom);
        const auto newCount = static_cast<std::size_t>(piece.newTo - piece.newFrom);
        if (oldCount == 0 || newCount == 0)
            return;
        if ((oldCount + 1) * (newCount + 1) <= maxTableCells) {
            matchExhaustively(piece);
            return;
        }
        Piece rest = piece;
        for (const Match &anchor : anchors(piece)) {
            match({rest.oldFrom, anchor.first, rest.newFrom, anchor.second});
            m_matches.push_back(anchor);
            rest.oldFrom = anchor.first + 1;
            rest.newFrom = anchor.second + 1;
        }
        if (rest.oldFrom != piece.oldFrom)
            match(rest);
    }

    /// Words that occur once on each side, as far as they are in the same order on both.
    std::vector<Match> anchors(const Piece &piece) const
    {
        struct Places {
            int oldCount = 0;
            int oldPlace = 0;
            int newCount = 0;
            int newPlace = 0;
        };
        QHash<int, Places> places;
        for (int i = piece.oldFrom; i < piece.oldTo; ++i) {
            Places &place = places[m_before[size_t(i)].number];
            ++place.oldCount;
            place.oldPlace = i;
        }
        for (int j = piece.newFrom; j < piece.newTo; ++j) {
            Places &place = places[m_after[size_t(j)].number];
            ++place.newCount;
            place.newPlace = j;
        }
        std::vector<Match> unique;
        for (const Places &place : std::as_const(places)) {
            if (place.oldCount == 1 && place.newCount == 1)
                unique.emplace_back(place.oldPlace, place.newPlace);
        }
        std::sort(unique.begin(), unique.end());
        return longestIncreasing(unique);
    }

    /// The longest subsequence of `pairs` that increases on the second side too.
    static std::vector<Match> longestIncreasing(const std::vector<Match> &pairs)
    {
        std::vector<int> tails;
        std::vector<int> before(pairs.size(), -1);
        for (int i = 0; i < static_cast<int>(pairs.size()); ++i) {
            const auto place =
                std::lower_bound(tails.begin(), tails.end(), pairs[size_t(i)].second,
                                 [&](int k, int j) { return pairs[size_t(k)].second < j; });
            if (place != tails.begin())
                before[size_t(i)] = *std::prev(place);
            if (place == tails.end())
                tails.push_back(i);
            else
                *place = i;
        }
        std::vector<Match> longest;
        for (int i = tails.empty() ? -1 : tails.back(); i >= 0; i = before[size_t(i)])
            longest.push_back(pairs[size_t(i)]);
        std::reverse(longest.begin(), longest.end());
        return longest;
    }

    /// The longest common subsequence, from a table of the lengths for all pairs of suffixes.
    void matchExhaustively(const Piece &piece)
    {
        const int oldCount = piece.oldTo - piece.oldFrom;
        const int newCount = piece.newTo - piece.newFrom;
        const auto columns = static_cast<std::size_t>(newCount + 1);
        m_table.assign(static_cast<std::size_t>(oldCount + 1) * columns, 0);
        const auto at = [&](int i, int j) -> int & {
            return m_table[size_t(i) * columns + size_t(j)];
        };
        for (int i = oldCount - 1; i >= 0; --i) {
            for (int j = newCount - 1; j >= 0; --j) {
                at(i, j) = isSame(piece.oldFrom + i, piece.newFrom + j)
                               ? at(i + 1, j + 1) + 1
                               : std::max(at(i + 1, j), at(i, j + 1));
            }
        }
        for (int i = 0, j = 0; i < oldCount && j < newCount;) {
            if (isSame(piece.oldFrom + i, piece.newFrom + j))
                m_matches.emplace_back(piece.oldFrom + i++, piece.newFrom + j++);
            else if (at(i + 1, j) >= at(i, j + 1))
                ++i;
            else
                ++j;
        }
    }

    const std::vector<Word> &m_before;
    const std::vector<Word> &m_after;
    std::vector<Match> m_matches;
    std::vector<int> m_table;
};

/// The change that puts the second piece of text in the place of the first, without the white space
/// that both begin or end with.
Change trimmed(QStringView before, QStringView after, Change change)
{
    while (change.oldLength > 0 && change.newLength > 0 &&
           before[change.oldFrom] == after[change.newFrom] && before[change.oldFrom].isSpace()) {
        ++change.oldFrom;
        ++change.newFrom;
        --change.oldLength;
        --change.newLength;
    }
    while (change.oldLength > 0 && change.newLength > 0 &&
           before[change.oldFrom + change.oldLength - 1] ==
               after[change.newFrom + change.newLength - 1] &&
           before[change.oldFrom + change.oldLength - 1].isSpace()) {
        --change.oldLength;
        --change.newLength;
    }
    return change;
}

} // namespace

QList<Change> changes(QStringView before, QStringView after)
{
    QHash<QStringView, int> numbers;
    const std::vector<Word> oldWords = wordsOf(before, numbers);
    const std::vector<Word> newWords = wordsOf(after, numbers);
    const Matcher matcher(oldWords, newWords);

    QList<Change> found;
    qsizetype oldEnd = 0;
    qsizetype newEnd = 0;
    const auto closeGap = [&](qsizetype oldTo, qsizetype newTo) {
        const Change gap{oldEnd, oldTo - oldEnd, newEnd, newTo - newEnd};
        if (before.sliced(gap.oldFrom, gap.oldLength) != after.sliced(gap.newFrom, gap.newLength))
            found.append(trimmed(before, after, gap));
    };
    for (const auto &[i, j] : matcher.matches()) {
        const Word &oldWord = oldWords[size_t(i)];
        const Word &newWord = newWords[size_t(j)];
        closeGap(oldWord.from, newWord.from);
        oldEnd = oldWord.from + oldWord.length;
        newEnd = newWord.from + newWord.length;
    }
    closeGap(before.size(), after.size());
    return found;
}

double likeness(QStringView before, QStringView after)
{
    QHash<QStringView, int> numbers;
    const std::vector<Word> oldWords = wordsOf(before, numbers);
    const std::vector<Word> newWords = wordsOf(after, numbers);
    const std::size_t longer = std::max(oldWords.size(), newWords.size());
    if (longer == 0)
        return 1;
    const Matcher matcher(oldWords, newWords);
    return static_cast<double>(matcher.matches().size()) / static_cast<double>(longer);
}

QString withoutChanges(QStringView before, QStringView after, const QList<Change> &undone)
{
    QString text;
    qsizetype end = 0;
    for (const Change &change : undone) {
        text += after.sliced(end, change.newFrom - end);
        text += before.sliced(change.oldFrom, change.oldLength);
        end = change.newFrom + change.newLength;
    }
    text += after.sliced(end);
    return text;
}

} // namespace TextDifference
