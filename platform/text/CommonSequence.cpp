// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/text/CommonSequence.h"

#include <QHash>

#include <algorithm>
#include <cstddef>

// A search for the longest list takes quadratic time for sequences that have little in common, such
// as a text and its translation. Here, items that occur once on both sides divide the sequences
// first, and only the short pieces between them are compared exhaustively.

namespace platform
{

namespace
{

/// Pieces whose table would have more cells than this are divided further, or given up.
constexpr std::size_t maxTableCells = 250'000;

/// Two ranges of items, one of each sequence.
struct Piece {
    int oldFrom;
    int oldTo;
    int newFrom;
    int newTo;
};

class Matcher
{
public:
    Matcher(const std::vector<int> &before, const std::vector<int> &after)
        : m_before(before)
        , m_after(after)
    {
        match({0, static_cast<int>(before.size()), 0, static_cast<int>(after.size())});
    }

    std::vector<CommonItem> takeMatches() { return std::move(m_matches); }

private:
    bool isSame(int i, int j) const { return m_before[size_t(i)] == m_after[size_t(j)]; }

    void match(Piece piece)
    {
        while (piece.oldFrom < piece.oldTo && piece.newFrom < piece.newTo &&
               isSame(piece.oldFrom, piece.newFrom))
            m_matches.emplace_back(piece.oldFrom++, piece.newFrom++);
        std::vector<CommonItem> suffix;
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
        for (const CommonItem &anchor : anchors(piece)) {
            match({rest.oldFrom, anchor.first, rest.newFrom, anchor.second});
            m_matches.push_back(anchor);
            rest.oldFrom = anchor.first + 1;
            rest.newFrom = anchor.second + 1;
        }
        if (rest.oldFrom != piece.oldFrom)
            match(rest);
    }

    /// Items that occur once on each side, as far as they are in the same order on both.
    std::vector<CommonItem> anchors(const Piece &piece) const
    {
        struct Places {
            int oldCount = 0;
            int oldPlace = 0;
            int newCount = 0;
            int newPlace = 0;
        };
        QHash<int, Places> places;
        for (int i = piece.oldFrom; i < piece.oldTo; ++i) {
            Places &place = places[m_before[size_t(i)]];
            ++place.oldCount;
            place.oldPlace = i;
        }
        for (int j = piece.newFrom; j < piece.newTo; ++j) {
            Places &place = places[m_after[size_t(j)]];
            ++place.newCount;
            place.newPlace = j;
        }
        std::vector<CommonItem> unique;
        for (const Places &place : std::as_const(places)) {
            if (place.oldCount == 1 && place.newCount == 1)
                unique.emplace_back(place.oldPlace, place.newPlace);
        }
        std::sort(unique.begin(), unique.end());
        return longestIncreasing(unique);
    }

    /// The longest subsequence of `pairs` that increases on the second side too.
    static std::vector<CommonItem> longestIncreasing(const std::vector<CommonItem> &pairs)
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
        std::vector<CommonItem> longest;
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
        const auto columns = static_cast<std::size_t>(newCount) + 1;
        m_table.assign((static_cast<std::size_t>(oldCount) + 1) * columns, 0);
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

    const std::vector<int> &m_before;
    const std::vector<int> &m_after;
    std::vector<CommonItem> m_matches;
    std::vector<int> m_table;
};

} // namespace

std::vector<CommonItem> commonSequence(const std::vector<int> &before,
                                       const std::vector<int> &after)
{
    return Matcher(before, after).takeMatches();
}

} // namespace platform
