// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/text/WordChanges.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QStringList>

#include <gtest/gtest.h>

using platform::WordChange;
using platform::wordChanges;

namespace
{

/// The changes as "old>new", each checked to turn one text into the other.
QStringList described(const QString &before, const QString &after)
{
    QStringList found;
    QString rebuilt;
    qsizetype end = 0;
    const QList<WordChange> all = wordChanges(before, after);
    for (const WordChange &change : all) {
        rebuilt += before.sliced(end, change.oldFrom - end);
        rebuilt += after.sliced(change.newFrom, change.newLength);
        end = change.oldFrom + change.oldLength;
        found.append(before.sliced(change.oldFrom, change.oldLength) + u'>' +
                     after.sliced(change.newFrom, change.newLength));
    }
    rebuilt += before.sliced(end);
    EXPECT_EQ(rebuilt, after);
    EXPECT_EQ(platform::withoutChanges(before, after, all), before);
    return found;
}

QStringList list(std::initializer_list<const char *> items)
{
    QStringList result;
    for (const char *item : items)
        result.append(QString::fromUtf8(item));
    return result;
}

QStringList described(const char *before, const char *after)
{
    return described(QString::fromUtf8(before), QString::fromUtf8(after));
}

} // namespace

TEST(WordChanges, NamesTheWordsThatChange)
{
    EXPECT_EQ(described("", ""), QStringList());
    EXPECT_EQ(described("the same text.", "the same text."), QStringList());
    EXPECT_EQ(described("", "new"), list({">new"}));
    EXPECT_EQ(described("old", ""), list({"old>"}));
    EXPECT_EQ(described("this are my first try", "this is my first try"), list({"are>is"}));
    EXPECT_EQ(described("a b c d", "a x c y"), list({"b>x", "d>y"}));
    EXPECT_EQ(described("one two", "one more two"), list({">more "}));
    EXPECT_EQ(described("Hello world", "Hello, world!"), list({">,", ">!"}));
    EXPECT_EQ(described("two  spaces\nhere", "two spaces here"), list({" >", "\n> "}));
    EXPECT_EQ(described("Das ist schön", "Das ist schon"), list({"schön>schon"}));
    EXPECT_EQ(described("well 👩🏽‍💻 done", "well 👩 done"),
              list({"👩🏽‍💻>👩"}));
}

TEST(WordChanges, IsRightForAnyTextsAndFindsFewChanges)
{
    QRandomGenerator random(7);
    for (int round = 0; round < 200; ++round) {
        QStringList before;
        for (int i = 0; i < 60; ++i)
            before.append(QString::number(random.bounded(12)));
        QStringList after = before;
        const int edits = int(random.bounded(6));
        for (int i = 0; i < edits; ++i)
            after[random.bounded(int(after.size()))] = QStringLiteral("new");
        EXPECT_LE(described(before.join(u' '), after.join(u' ')).size(), edits);
        described(before.join(u' '), QString::number(random.generate()).repeated(3));
    }
}

TEST(WordChanges, LongTextsThatDifferEverywhereTakeNoTime)
{
    QRandomGenerator random(3);
    QStringList before;
    for (int i = 0; i < 20'000; ++i)
        before.append(QStringLiteral("w%1").arg(random.bounded(3000)));
    QStringList after = before;
    for (int i = 0; i < 20'000; i += 3)
        after[i] = QStringLiteral("v%1").arg(random.bounded(3000));
    QStringList other;
    for (int i = 0; i < 20'000; ++i)
        other.append(QStringLiteral("u%1").arg(random.bounded(50)));
    QElapsedTimer timer;
    timer.start();
    described(before.join(u' '), after.join(u' '));
    described(before.join(u' '), other.join(u' '));
    // A quadratic comparison of 20,000 words takes minutes.
    EXPECT_LT(timer.elapsed(), 20'000);
}

TEST(WordChanges, LikenessTellsARewritingFromATranslation)
{
    const auto likeness = [](const char *before, const char *after) {
        return platform::likeness(QString::fromUtf8(before), QString::fromUtf8(after));
    };
    EXPECT_EQ(likeness("", ""), 1);
    EXPECT_EQ(likeness("one two three four", "one two three five"), 0.75);
    EXPECT_EQ(likeness("good morning", "buenos días"), 0);
}
