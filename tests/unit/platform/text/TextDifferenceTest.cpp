// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/text/TextDifference.h"
#include "platform/text/ProgramChanges.h"

#include <gtest/gtest.h>

#include <random>

using namespace platform;

namespace
{

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// The edits as "position+length→replacement", one after the other.
std::string edits(const char *before, const char *after, qsizetype maxGap = -1)
{
    QString all;
    QList<TextEdit> list = textDifference(text(before), text(after));
    EXPECT_EQ(withEdits(text(before), list), text(after));
    if (maxGap >= 0)
        list = joinedEdits(list, text(before), maxGap);
    EXPECT_EQ(withEdits(text(before), list), text(after));
    for (const TextEdit &edit : list)
        all +=
            QStringLiteral("%1+%2→%3;").arg(edit.position).arg(edit.length).arg(edit.replacement);
    return all.toStdString();
}

TEST(TextDifference, ReplacesWholeWordsAndCharacters)
{
    EXPECT_EQ(edits("same", "same"), "");
    EXPECT_EQ(edits("", "new"), "0+0→new;");
    EXPECT_EQ(edits("old", ""), "0+3→;");
    EXPECT_EQ(edits("I has a cat", "I have a cat"), "2+3→have;");
    EXPECT_EQ(edits("one two four", "one two three four"), "8+0→three ;");
    EXPECT_EQ(edits("my frist try , i has", "My first try, I have"),
              "0+2→My;3+5→first;12+1→;15+1→I;17+3→have;");
    // The halves of an emoji, a flag or an accent are never told apart.
    EXPECT_EQ(edits("a 👍🏽 b", "a 👍🏿 b"), "2+4→👍🏿;");
    EXPECT_EQ(edits("🇩🇪🇫🇷", "🇩🇪🇯🇵"), "4+4→🇯🇵;");
    EXPECT_EQ(edits("cafe x", "cafe\u0301 x"), "0+4→cafe\u0301;");
    // No words here: single characters.
    EXPECT_EQ(edits("今天天气很好", "今天天氣很好"), "3+1→氣;");
}

TEST(TextDifference, JoinsWhatLiesClose)
{
    EXPECT_EQ(edits("a b c d e f", "A b C d e F", 2), "0+1→A;4+1→C;10+1→F;");
    EXPECT_EQ(edits("a b c d e f", "A b C d e F", 3), "0+5→A b C;10+1→F;");
    EXPECT_EQ(edits("a b c d e f", "A b C d e F", 5), "0+11→A b C d e F;");
}

TEST(TextDifference, AnyTextBecomesAnyOther)
{
    std::mt19937 random(7);
    const QStringList words{text("a"),
                            text("bb"),
                            text(" "),
                            text("\n"),
                            text("e\u0301"),
                            text("😀"),
                            text("👩🏽‍💻"),
                            text("字"),
                            text("\u0301"),
                            text(",")};
    const auto any = [&](int length) {
        QString made;
        for (int i = 0; i < length; ++i)
            made += words.at(static_cast<qsizetype>(random() % 10));
        return made;
    };
    for (int i = 0; i < 300; ++i) {
        const QString before = any(static_cast<int>(random() % 40));
        const QString after = i % 2 ? any(static_cast<int>(random() % 40))
                                    : QString(before).insert(before.size() / 2, any(2));
        const auto list = textDifference(before, after);
        ASSERT_EQ(withEdits(before, list), after) << before.toStdString();
        qsizetype end = -1;
        for (const TextEdit &edit : list) {
            ASSERT_GT(edit.position, end) << "something equal lies between two";
            ASSERT_TRUE(edit.length > 0 || !edit.replacement.isEmpty());
            end = edit.end();
        }
    }
}

TEST(TextDifference, TextsWithLittleInCommonAreOneEdit)
{
    // Also where words between them are equal; what both begin and end with stays.
    QString before = text("Dear all, ");
    QString after = before;
    for (int i = 0; i < 3000; ++i) {
        before += QStringLiteral("old%1 same%1 ").arg(i);
        after += QStringLiteral("new%1 same%1 ").arg(i);
    }
    const auto list = textDifference(before + text("Bye"), after + text("Bye"));
    ASSERT_EQ(list.size(), 1);
    EXPECT_EQ(list.first().position, 10);
    EXPECT_EQ(list.first().end(), before.size() - text(" same2999 ").size());
    EXPECT_EQ(withEdits(before, list), after);
}

TEST(TextDifference, CountsTheCharactersThatThePersonSees)
{
    const QString before = text("a 👍🏽 b");
    EXPECT_EQ(changedCharacters(textDifference(before, text("a 👩🏽‍💻 b")), before), 1);
    EXPECT_EQ(changedCharacters(textDifference(before, text("a b")), before), 2);
    EXPECT_EQ(changedCharacters(textDifference(before, text("axy 👍🏽 b!")), before), 4);
}

TEST(ProgramChanges, KnowsWhatProgramsChangeByThemselves)
{
    const QString wanted = text("say \"it's\" - done...\n\tnext\n");
    for (const char *found : {"say “it’s” – done…\n    next", "Say \"it's\" -- done...\n\nnext\n\n",
                              "say \"it's\" - done...\u2029\u00a0next\ufeff"})
        EXPECT_TRUE(isProgramsOwnChange(wanted, text(found))) << found;
    for (const char *found :
         {"say \"its\" - done...\n\tnext\n", "say \"it's\" - done...next\n", "",
          "say \"it's\" - doNe...\n\tnext\n", "say \"it's\" - done...\n\tnext\nsay"})
        EXPECT_FALSE(isProgramsOwnChange(wanted, text(found))) << found;
}

} // namespace
