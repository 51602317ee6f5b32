// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/text/TextDifference.h"

#include <QHash>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <optional>
#include <vector>

namespace platform
{

namespace
{

/// With more differences than this the texts have little in common, and looking for the rest takes
/// longer than it saves.
constexpr int maxDifferences = 1200;

struct Token {
    qsizetype position = 0;
    qsizetype length = 0;
    int id = 0;
};

/// Whether the character belongs to a word that is written without a space to its neighbours.
/// Scripts that are written without spaces have no such words.
bool isPartOfWord(QStringView character)
{
    const char32_t first = character.at(0).isHighSurrogate() && character.size() > 1
                               ? QChar::surrogateToUcs4(character.at(0), character.at(1))
                               : character.at(0).unicode();
    if (!QChar::isLetterOrNumber(first))
        return false;
    switch (QChar::script(first)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Thai:
    case QChar::Script_Lao:
    case QChar::Script_Khmer:
    case QChar::Script_Myanmar:
        return false;
    default:
        return true;
    }
}

qsizetype characterCount(QStringView text)
{
    qsizetype count = 0;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    while (characters.toNextBoundary() != -1)
        ++count;
    return count;
}

/// The words of a text and the characters between them. Equal ones have the same id.
std::vector<Token> tokensOf(const QString &text, QHash<QStringView, int> &ids)
{
    std::vector<Token> tokens;
    bool inWord = false;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype from = 0, to = 0; (to = characters.toNextBoundary()) != -1; from = to) {
        const bool word = isPartOfWord(QStringView(text).sliced(from, to - from));
        if (word && inWord)
            tokens.back().length = to - tokens.back().position;
        else
            tokens.push_back({from, to - from, 0});
        inWord = word;
    }
    for (Token &token : tokens) {
        const QStringView view = QStringView(text).sliced(token.position, token.length);
        token.id = ids.value(view, -1);
        if (token.id < 0) {
            token.id = static_cast<int>(ids.size());
            ids.insert(view, token.id);
        }
    }
    return tokens;
}

/// A stretch of equal tokens: `length` from `before` on in the one text and from `after` on in the
/// other.
struct Match {
    int before = 0;
    int after = 0;
    int length = 0;
};

using Tokens = std::vector<Token>;

/// The shortest edit script as its equal stretches (E. W. Myers, "An O(ND) Difference Algorithm and
/// Its Variations", 1986); nothing when it would have more than maxDifferences steps. Looks at the
/// tokens from `first` to `beforeEnd` and `afterEnd`.
std::optional<std::vector<Match>> matches(const Tokens &before, const Tokens &after, int first,
                                          int beforeEnd, int afterEnd)
{
    const int n = beforeEnd - first;
    const int m = afterEnd - first;
    const int limit = std::min(n + m, maxDifferences);
    const auto same = [&](int x, int y) {
        return before[static_cast<std::size_t>(first + x)].id ==
               after[static_cast<std::size_t>(first + y)].id;
    };
    // reached[d][k + d] is the furthest x on diagonal k (x - y) after d differences.
    std::vector<std::vector<int>> reached;
    const auto furthest = [&](int d, int k) {
        const auto &row = reached[static_cast<std::size_t>(d)];
        return k < -d || k > d ? -1 : row[static_cast<std::size_t>(k + d)];
    };
    const auto start = [&](int d, int k) {
        if (d == 0)
            return 0;
        const int down = furthest(d - 1, k + 1);
        const int right = furthest(d - 1, k - 1);
        return std::max(down, right < 0 ? -1 : right + 1);
    };
    int differences = 0;
    for (bool done = n == 0 && m == 0; !done; ++differences) {
        if (differences > limit)
            return std::nullopt;
        reached.emplace_back(static_cast<std::size_t>(2 * differences + 1), -1);
        for (int k = -differences; k <= differences && !done; k += 2) {
            int x = start(differences, k);
            int y = x - k;
            if (x < 0 || x > n || y < 0 || y > m)
                continue;
            while (x < n && y < m && same(x, y))
                ++x, ++y;
            reached.back()[static_cast<std::size_t>(k + differences)] = x;
            done = x == n && y == m;
        }
    }
    std::vector<Match> found;
    for (int d = differences - 1, x = n, y = m; d >= 0; --d) {
        const int k = x - y;
        const int from = start(d, k);
        if (x > from)
            found.push_back({first + from, first + from - k, x - from});
        if (d == 0)
            break;
        const bool down = furthest(d - 1, k + 1) == from;
        x = down ? from : from - 1;
        y = x - (down ? k + 1 : k - 1);
    }
    std::reverse(found.begin(), found.end());
    return found;
}

qsizetype positionOf(const Tokens &tokens, int index, const QString &text)
{
    const auto at = static_cast<std::size_t>(index);
    return at < tokens.size() ? tokens[at].position : text.size();
}

} // namespace

QList<TextEdit> textDifference(const QString &before, const QString &after)
{
    QHash<QStringView, int> ids;
    const Tokens old = tokensOf(before, ids);
    const Tokens now = tokensOf(after, ids);
    const auto oldSize = static_cast<int>(old.size());
    const auto newSize = static_cast<int>(now.size());
    const auto same = [&](int x, int y) {
        return old[static_cast<std::size_t>(x)].id == now[static_cast<std::size_t>(y)].id;
    };
    int head = 0;
    while (head < oldSize && head < newSize && same(head, head))
        ++head;
    int tail = 0;
    while (tail < std::min(oldSize, newSize) - head && same(oldSize - tail - 1, newSize - tail - 1))
        ++tail;

    QList<TextEdit> edits;
    int x = head;
    int y = head;
    const auto replace = [&](int toX, int toY) {
        if (x == toX && y == toY)
            return;
        const qsizetype from = positionOf(old, x, before);
        const qsizetype newFrom = positionOf(now, y, after);
        edits.append({from, positionOf(old, toX, before) - from,
                      after.sliced(newFrom, positionOf(now, toY, after) - newFrom)});
    };
    for (const Match &match :
         matches(old, now, head, oldSize - tail, newSize - tail).value_or(std::vector<Match>())) {
        replace(match.before, match.after);
        x = match.before + match.length;
        y = match.after + match.length;
    }
    replace(oldSize - tail, newSize - tail);
    return edits;
}

QList<TextEdit> joinedEdits(const QList<TextEdit> &edits, const QString &before, qsizetype maxGap)
{
    QList<TextEdit> joined;
    for (const TextEdit &edit : edits) {
        if (joined.isEmpty() || edit.position - joined.last().end() > maxGap) {
            joined.append(edit);
            continue;
        }
        TextEdit &last = joined.last();
        last.replacement += QStringView(before).sliced(last.end(), edit.position - last.end());
        last.replacement += edit.replacement;
        last.length = edit.end() - last.position;
    }
    return joined;
}

QString withEdits(const QString &before, const QList<TextEdit> &edits)
{
    QString result;
    qsizetype at = 0;
    for (const TextEdit &edit : edits) {
        result += QStringView(before).sliced(at, edit.position - at);
        result += edit.replacement;
        at = edit.end();
    }
    result += QStringView(before).sliced(at);
    return result;
}

qsizetype changedCharacters(const QList<TextEdit> &edits, const QString &before)
{
    qsizetype count = 0;
    for (const TextEdit &edit : edits) {
        count += std::max(characterCount(QStringView(before).sliced(edit.position, edit.length)),
                          characterCount(edit.replacement));
    }
    return count;
}

} // namespace platform
