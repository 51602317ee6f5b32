// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/TypingPlan.h"

#include <algorithm>
#include <unordered_map>

namespace platform::linux_
{

namespace
{

constexpr int spacesForTab = 4;

bool canBeTyped(char32_t codePoint)
{
    const bool control = codePoint < 0x20 || (codePoint >= 0x7f && codePoint < 0xa0);
    const bool nonCharacter =
        (codePoint & 0xfffe) == 0xfffe || (codePoint >= 0xfdd0 && codePoint <= 0xfdef);
    return !control && !nonCharacter;
}

// toUcs4() would turn a lone surrogate into U+FFFD; it is to be left out.
std::vector<char32_t> codePointsOf(const QString &text)
{
    std::vector<char32_t> result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        if (!unit.isSurrogate()) {
            result.push_back(unit.unicode());
        } else if (unit.isHighSurrogate() && i + 1 < text.size() &&
                   text.at(i + 1).isLowSurrogate()) {
            result.push_back(QChar::surrogateToUcs4(unit, text.at(i + 1)));
            ++i;
        }
    }
    return result;
}

// Whether the line at the end of `keys` is indented, or opens a block.
bool invitesIndent(const std::vector<PlannedKey> &keys)
{
    const auto lastBreak = std::find_if(keys.rbegin(), keys.rend(), [](const PlannedKey &key) {
        return key.kind == PlannedKey::Kind::LineBreak;
    });
    const auto line = lastBreak.base();
    if (line == keys.end())
        return lastBreak != keys.rend() && lastBreak->mayIndent;
    const char32_t last = keys.back().codePoint;
    return line->codePoint == U' ' || line->codePoint == U'\t' || last == U'{' || last == U'(' ||
           last == U'[' || last == U':';
}

std::vector<Segment> cut(const std::vector<PlannedKey> &keys, std::size_t capacity)
{
    std::vector<Segment> segments(1);
    std::unordered_map<char32_t, std::size_t> uses;
    const auto close = [&](std::size_t end) {
        segments.back().end = end;
        std::vector<char32_t> &characters = segments.back().characters;
        std::stable_sort(characters.begin(), characters.end(),
                         [&](char32_t a, char32_t b) { return uses[a] > uses[b]; });
        uses.clear();
    };
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const PlannedKey &key = keys[i];
        if (key.kind != PlannedKey::Kind::Character || key.onLayout)
            continue;
        if (!uses.count(key.codePoint)) {
            if (uses.size() == capacity) {
                close(i);
                segments.push_back({i, i, {}});
            }
            segments.back().characters.push_back(key.codePoint);
        }
        ++uses[key.codePoint];
    }
    close(keys.size());
    return segments;
}

} // namespace

std::vector<PlannedKey> planKeys(const QList<KeyboardEvent> &events,
                                 const KeyboardMap::Lookup &layout, const TypingHabits &habits)
{
    std::vector<PlannedKey> keys;
    const auto addCharacter = [&](char32_t codePoint) {
        keys.push_back(
            {PlannedKey::Kind::Character, codePoint, false, layout.character(codePoint)});
    };
    QString all;
    for (const KeyboardEvent &event : events) {
        if (event.keyDown && all.size() < 2)
            all += event.unicodeString;
    }
    if (all == QChar(u'\b'))
        return {{PlannedKey::Kind::BackSpace, U'\b', false, std::nullopt}};
    for (const KeyboardEvent &event : events) {
        if (!event.keyDown)
            continue;
        bool afterCarriageReturn = false;
        for (const char32_t codePoint : codePointsOf(event.unicodeString)) {
            const bool secondHalf = codePoint == U'\n' && afterCarriageReturn;
            afterCarriageReturn = codePoint == U'\r';
            if (secondHalf)
                continue;
            if (codePoint == U'\n' || codePoint == U'\r') {
                keys.push_back(
                    {PlannedKey::Kind::LineBreak, U'\n', invitesIndent(keys), std::nullopt});
            } else if (codePoint == U'\t') {
                if (habits.takesTabs) {
                    keys.push_back({PlannedKey::Kind::Tab, U'\t', false, std::nullopt});
                } else {
                    for (int i = 0; i < spacesForTab; ++i)
                        addCharacter(U' ');
                }
            } else if (canBeTyped(codePoint)) {
                addCharacter(codePoint);
            }
        }
    }
    return keys;
}

std::optional<std::vector<Segment>> cutIntoSegments(const std::vector<PlannedKey> &keys,
                                                    std::size_t wholeCapacity,
                                                    std::size_t bankCapacity)
{
    std::vector<Segment> whole = cut(keys, wholeCapacity ? wholeCapacity : 1);
    if (whole.size() == 1 && whole.front().characters.size() <= wholeCapacity)
        return whole;
    if (bankCapacity == 0)
        return std::nullopt;
    return cut(keys, bankCapacity);
}

} // namespace platform::linux_
