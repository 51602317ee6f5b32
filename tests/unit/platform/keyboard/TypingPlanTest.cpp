// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/TypingPlan.h"

#include <gtest/gtest.h>

#include <string>

using namespace platform;
using namespace platform::linux_;

namespace
{

KeyboardMap::Lookup layoutWithSmallA()
{
    KeyboardMap map;
    map.types = {{0, 1, {}}};
    map.keys[38].groups = {{0, {'a'}}};
    map.keys[65].groups = {{0, {' '}}};
    return map.lookup(0, 0);
}

QList<KeyboardEvent> events(std::initializer_list<QString> characters)
{
    QList<KeyboardEvent> list;
    for (const QString &character : characters)
        list << KeyboardEvent{true, character} << KeyboardEvent{false, character};
    return list;
}

std::u32string typed(std::initializer_list<QString> characters, TypingHabits habits = {})
{
    std::u32string text;
    for (const PlannedKey &key : planKeys(events(characters), layoutWithSmallA(), habits))
        text += key.codePoint;
    return text;
}

TEST(TypingPlan, LeavesOutWhatNoKeyTypes)
{
    const QString lonely =
        QStringLiteral("a") + QChar(0xd83d) + QStringLiteral("a") + QChar(0xde00) + QChar(0xd83d);
    const QString controls = QString(QChar(0)) + QChar(0x1b) + QChar(0x7f) + QChar(0x85) +
                             QChar(0xfffe) + QChar(0xfdd0) + QChar(0x200f);
    EXPECT_EQ(typed({lonely, controls}), U"aa\u200f");
}

TEST(TypingPlan, DeletesOnlyWhenThatIsAllThereIsToDo)
{
    const auto keys = planKeys(events({QStringLiteral("\b")}), layoutWithSmallA(), {});
    ASSERT_EQ(keys.size(), 1U);
    EXPECT_EQ(keys[0].kind, PlannedKey::Kind::BackSpace);
    EXPECT_EQ(typed({QStringLiteral("a"), QStringLiteral("\b"), QStringLiteral("a")}), U"aa");
}

TEST(TypingPlan, BreaksLinesOnceAndKeepsTabsInTheInput)
{
    EXPECT_EQ(typed({QStringLiteral("\r\n"), QStringLiteral("\r"), QStringLiteral("\n"),
                     QStringLiteral("\n")}),
              U"\n\n\n\n");
    EXPECT_EQ(typed({QStringLiteral("a"), QStringLiteral("\t"), QStringLiteral("a")}), U"a    a");
    EXPECT_EQ(typed({QStringLiteral("\t")}, {false, true}), U"\t");
}

TEST(TypingPlan, CutsWhatDoesNotFitIntoBanks)
{
    const auto keys = planKeys(events({QStringLiteral("жaзжийжкл")}), layoutWithSmallA(), {});
    const auto whole = cutIntoSegments(keys, 6, 3);
    ASSERT_TRUE(whole);
    ASSERT_EQ(whole->size(), 1U);
    EXPECT_EQ(whole->front().characters.size(), 6U);

    const auto cut = cutIntoSegments(keys, 5, 2);
    ASSERT_TRUE(cut);
    std::size_t at = 0;
    for (const Segment &segment : *cut) {
        EXPECT_EQ(segment.begin, at);
        EXPECT_LE(segment.characters.size(), 2U);
        for (std::size_t i = segment.begin; i < segment.end; ++i) {
            EXPECT_TRUE(keys[i].onLayout ||
                        std::count(segment.characters.begin(), segment.characters.end(),
                                   keys[i].codePoint) == 1);
        }
        at = segment.end;
    }
    EXPECT_EQ(at, keys.size());

    EXPECT_FALSE(cutIntoSegments(keys, 0, 0)) << "nothing to lend";
    EXPECT_TRUE(
        cutIntoSegments(planKeys(events({QStringLiteral("a")}), layoutWithSmallA(), {}), 0, 0));
}

} // namespace
