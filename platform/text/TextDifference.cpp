// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/text/TextDifference.h"

#include "platform/text/CommonSequence.h"

#include <QHash>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <iterator>
#include <vector>

namespace platform
{

namespace
{

/// With more words and characters than this that are in one text alone, the texts have little in
/// common, and many edits would take longer than they save.
constexpr std::size_t maxDifferences = 1200;

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

using Tokens = std::vector<Token>;

std::vector<int> idsOf(const Tokens &tokens)
{
    std::vector<int> ids;
    ids.reserve(tokens.size());
    for (const Token &token : tokens)
        ids.push_back(token.id);
    return ids;
}

/// Removes the common items that are not part of a common beginning or end. `end` is the place
/// after the last item of both sequences.
void keepBeginningAndEnd(std::vector<CommonItem> &common, const CommonItem &end)
{
    auto from = common.begin();
    for (int i = 0; from != common.end() && *from == CommonItem(i, i); ++i)
        ++from;
    auto to = common.end();
    for (int i = 1; to != from && *std::prev(to) == CommonItem(end.first - i, end.second - i); ++i)
        --to;
    common.erase(from, to);
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
    std::vector<CommonItem> common = commonSequence(idsOf(old), idsOf(now));
    const auto end = CommonItem(static_cast<int>(old.size()), static_cast<int>(now.size()));
    if (old.size() + now.size() - 2 * common.size() > maxDifferences)
        keepBeginningAndEnd(common, end);
    common.push_back(end);

    QList<TextEdit> edits;
    int x = 0;
    int y = 0;
    for (const auto &[toX, toY] : common) {
        if (x != toX || y != toY) {
            const qsizetype from = positionOf(old, x, before);
            const qsizetype newFrom = positionOf(now, y, after);
            edits.append({from, positionOf(old, toX, before) - from,
                          after.sliced(newFrom, positionOf(now, toY, after) - newFrom)});
        }
        x = toX + 1;
        y = toY + 1;
    }
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

qsizetype movedPosition(const QList<TextEdit> &edits, qsizetype position)
{
    qsizetype moved = position;
    for (const TextEdit &edit : edits) {
        if (edit.position >= position)
            break;
        const qsizetype within = std::min(position, edit.end()) - edit.position;
        const qsizetype now = position >= edit.end() ? edit.replacement.size()
                                                     : std::min(within, edit.replacement.size());
        moved += now - within;
    }
    return moved;
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
