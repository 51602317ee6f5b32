// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/AnswerCleaner.h"
#include "backend/model/MeaningGuard.h"

#include <gtest/gtest.h>

namespace
{

/// What a stream hands out when the answer comes in pieces of `size`.
QString streamed(const QString &answer, const QString &text, qsizetype size)
{
    AnswerStream stream(text, u"d"_qs);
    QString result;
    for (qsizetype i = 0; i < answer.size(); i += size)
        result += stream.feed(answer.mid(i, size));
    return result;
}

TEST(AnswerCleaner, RemovesOnlyWhatIsNoPartOfTheText)
{
    const struct {
        QString answer;
        QString expected;
        QString text = u"hello"_qs;
    } cases[] = {
        {u"<text-d>\nHello\n</text-d>\n"_qs, u"Hello"_qs},
        {u"<text>\nHello\n</text>"_qs, u"Hello"_qs},
        {u"<think>\nhm </text-d>\n</think>\n\nHello"_qs, u"Hello"_qs},
        {u"hm, so\n</think>\nHello"_qs, u"Hello"_qs},
        {u"<think>hm"_qs, QString()},
        {u"[THINK]hm[/THINK]Hello"_qs, u"Hello"_qs},
        {u"<reasoning>a</reasoning>\n<think>b</think>Hello"_qs, u"Hello"_qs},
        {u"<|channel|>analysis<|message|>hm<|end|><|start|>assistant<|channel|>final<|message|>Hello"_qs,
         u"Hello"_qs},
        {u"<|im_start|>assistant\nHello<|im_end|>"_qs, u"Hello"_qs},
        {u"Hello</s>"_qs, u"Hello"_qs},
        {u"Hello<|eot_id|><|end_of_text|>"_qs, u"Hello"_qs},
        {u"Hello<end_of_turn>\n"_qs, u"Hello"_qs},
        {u"The <think> tag"_qs, u"The <think> tag"_qs},
        {u"<think>a</think> b"_qs, u"<think>a</think> b"_qs, u"<think>x</think>"_qs},
        {u"Here is the improved version:\n\nHello"_qs, u"Hello"_qs},
        {u"Sure! Here's the corrected text:\nHello"_qs, u"Hello"_qs},
        {u"**Improved version:**\n\nHello"_qs, u"Hello"_qs},
        {u"Translation: Hello"_qs, u"Hello"_qs},
        {u"Here is the plan: we go."_qs, u"Here is the plan: we go."_qs},
        {u"Here is the list:\n- a"_qs, u"Here is the list:\n- a"_qs, u"Here are the list:\n- a"_qs},
        {u"Result: 4"_qs, u"Result: 4"_qs, u"result: 4"_qs},
        {u"Sure, I can come."_qs, u"Sure, I can come."_qs, u"sure I can come"_qs},
        {u"Hello\n\nLet me know if you want it shorter!"_qs, u"Hello"_qs},
        {u"Hello\n\n**Changes made:**\n- a\n- b"_qs, u"Hello"_qs},
        {u"Hello\n\nLet me know."_qs, u"Hello\n\nLet me know."_qs, u"hello\n\nlet me know"_qs},
        {u"```text\nHello\n```"_qs, u"Hello"_qs},
        {u"```\nHello\n```"_qs, u"```\nHello\n```"_qs, u"```\nhello\n```"_qs},
        {u"See:\n```\ncode\n```"_qs, u"See:\n```\ncode\n```"_qs},
        {u"```\na\n```\nb\n```\nc\n```"_qs, u"```\na\n```\nb\n```\nc\n```"_qs},
        {u"\"Hello\""_qs, u"Hello"_qs},
        {u"\u201cHello\u201d"_qs, u"Hello"_qs},
        {u"\"Hello\""_qs, u"\"Hello\""_qs, u"\"hello\""_qs},
        {u"\"No\" and \"yes\""_qs, u"\"No\" and \"yes\""_qs},
        {u"{\"text\": \"Hello\\nyou\"}"_qs, u"Hello\nyou"_qs},
        {u"a\nb"_qs, u"a\r\nb"_qs, u"a\r\nb"_qs},
        {u"a\r\nb"_qs, u"a\nb"_qs, u"a\nb"_qs},
        {u"a\x1b[2Jb\x07"_qs, u"a[2Jb"_qs},
        {u"a\u202eb\u0085\u200b\u2066c\u2069\u061c"_qs, u"abc"_qs},
        {u"a\u202eb\u200bc"_qs, u"a\u202ebc"_qs, u"\u202eab"_qs},
        {u"a\U000E0041\U000E0042b"_qs, u"ab"_qs},
        {u"\U0001F3F4\U000E0067\U000E0062\U000E007Fx"_qs,
         u"\U0001F3F4\U000E0067\U000E0062\U000E007Fx"_qs},
        {u"e\u0301 \u200d \u00a0"_qs, u"e\u0301 \u200d"_qs},
    };
    for (const auto &[answer, expected, text] : cases) {
        EXPECT_EQ(cleanedAnswer(answer, text, u"d"_qs), expected) << qPrintable(answer);
        // In pieces, nothing is shown that is surely wrong: no thoughts, no announcement.
        for (const qsizetype size : {qsizetype(1), qsizetype(4), answer.size()}) {
            // An end without a beginning cannot be foreseen.
            const QString shown =
                answer.startsWith(u"hm") ? QString() : streamed(answer, text, size);
            for (const char16_t *noise : {u"hm", u"Here's", u"improved", u"<|"}) {
                const QString word = QString::fromUtf16(noise);
                EXPECT_EQ(shown.contains(word), shown.contains(word) && expected.contains(word))
                    << size << ' ' << qPrintable(shown);
            }
        }
    }
}

TEST(AnswerStream, HandsOutThePlainTextAsItComes)
{
    const QString text = u"some words and a 2nd line"_qs;
    const QString answer = u"Some words.\nAnd a line with <b> and \"quotes\" in it, at last."_qs;
    for (const qsizetype size : {1, 2, 5, 100})
        EXPECT_TRUE(answer.startsWith(streamed(answer, text, size))) << size;
    AnswerStream stream(text, u"d"_qs);
    EXPECT_EQ(stream.feed(u"Some wo"_qs), u"Some wo"_qs) << "without waiting for a line";
    EXPECT_EQ(stream.feed(u"rds "_qs), u"rds"_qs);
    EXPECT_EQ(stream.feed(u"and"_qs), u" and"_qs);
    // Long and in many pieces: each one costs its own length only.
    QString shown;
    for (int i = 0; i < 20'000; ++i)
        shown += stream.feed(u" word"_qs);
    EXPECT_EQ(shown.size(), 100'000);
}

TEST(AnswerCleaner, KnowsRefusalsAndLoops)
{
    const QString text = u"Dear all, the meeting is on Monday."_qs;
    for (const QString &answer :
         {u"I'm sorry, but I can't help with that."_qs, u"I cannot assist with this request."_qs,
          u"As an AI language model, I do not have opinions."_qs})
        EXPECT_TRUE(isRefusal(answer, text)) << qPrintable(answer);
    EXPECT_FALSE(isRefusal(u"I'm sorry that I am late."_qs, text));
    EXPECT_FALSE(isRefusal(u"Unfortunately, I cannot help with the move."_qs,
                           u"Unfortunately I can not help with the move"_qs));
    EXPECT_FALSE(isRefusal(u"We can't help you."_qs, text));

    const QString start = u"A beginning of a text that is fine so far. "_qs.repeated(30);
    EXPECT_TRUE(isLooping(start + u"and so on "_qs.repeated(150), text));
    EXPECT_FALSE(isLooping(start.first(1000), text));
    EXPECT_FALSE(isLooping(start + QString(2000, u'-'), text + QString(2000, u'-')));
}

TEST(MeaningGuard, NamesWhatIsLostOrOtherwise)
{
    const QString text =
        u"We met Ada Lovelace on 12.5. and paid 1,200 EUR; see https://a.example/x?y=1, "
        "write to ada@a.example or run `make all`. Then we left."_qs;
    EXPECT_EQ(lostFacts(text, text), QStringList());
    EXPECT_EQ(lostFacts(text, u"We left."_qs),
              QStringList({u"Ada Lovelace"_qs, u"12.5"_qs, u"1,200"_qs, u"EUR"_qs,
                           u"https://a.example/x?y=1"_qs, u"ada@a.example"_qs, u"`make all`"_qs}));
    EXPECT_EQ(lostFacts(u"it costs 15"_qs, u"It costs 150."_qs), QStringList{u"15"_qs});

    EXPECT_EQ(changedShare(u"this are a test"_qs, u"This is a test."_qs), 0.25);
    EXPECT_EQ(changedShare(u"one two"_qs, u"three four"_qs), 1);
    EXPECT_EQ(changedShare(u""_qs, u""_qs), 0);
    const QString page = u"word "_qs.repeated(5000);
    EXPECT_EQ(changedShare(page, page), 0);
    EXPECT_EQ(withoutEmoji(u"Good morning ☀️ all 👩‍👩‍👧!"_qs),
              u"Good morning all!"_qs);
}

} // namespace
