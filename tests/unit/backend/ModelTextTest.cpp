// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/AnswerCleaner.h"
#include "backend/model/ServerSentEvents.h"
#include "backend/model/TextSplitter.h"

#include <gtest/gtest.h>

namespace
{

TEST(TextSplitter, LosesNothingAndKeepsTheBound)
{
    const QString words = u"A sentence of words. Another one! "_qs;
    const QString texts[] = {
        words.repeated(50) + u"\n\n"_qs + words.repeated(30) + u"\r\n\r\n \t"_qs +
            words.repeated(9),
        u"  \n\n"_qs,
        QString(3000, u'x'),
        u"漢字の文。"_qs.repeated(400),
        u"👩‍👩‍👧"_qs.repeated(300),
        u"line\n"_qs.repeated(500),
    };
    for (const QString &text : texts) {
        QString joined;
        const auto parts = splitText(text, 200);
        for (const TextPart &part : parts) {
            joined += part.text;
            if (!part.forModel) {
                EXPECT_TRUE(part.text.trimmed().isEmpty());
                continue;
            }
            EXPECT_LE(estimatedTokens(part.text), 200);
            EXPECT_EQ(part.text, part.text.trimmed());
            EXPECT_FALSE(part.text.front().isLowSurrogate());
            EXPECT_FALSE(part.text.front() == QChar(0x200d)) << "cut inside a character";
        }
        EXPECT_EQ(joined, text);
    }
}

TEST(TextSplitter, CutsBetweenParagraphsThenLinesThenSentences)
{
    const QString long1 = QString(500, u'a');
    const auto first = [](const QString &text) { return splitText(text, 200).first().text; };
    EXPECT_EQ(first(long1 + u"\n \nb b. c\nd "_qs + long1), long1);
    EXPECT_EQ(first(long1 + u"\nb b. c "_qs + long1), long1);
    EXPECT_EQ(first(long1 + u" b b. c "_qs + long1), long1 + u" b b."_qs);
}

TEST(AnswerCleaner, RemovesOnlyWhatIsSurelyWrapping)
{
    const struct {
        QString answer;
        QString text;
        QString expected;
    } cases[] = {
        {u"<text-d>\nHello\n</text-d>\n"_qs, u"hello"_qs, u"Hello"_qs},
        {u"<think>\nhm </text-d>\n</think>\n\nHello"_qs, u"hello"_qs, u"Hello"_qs},
        {u"hm, so\n</think>\nHello"_qs, u"hello"_qs, u"Hello"_qs},
        {u"<think>hm"_qs, u"hello"_qs, QString()},
        {u"The <think> tag"_qs, u"hello"_qs, u"The <think> tag"_qs},
        {u"<think>a</think> b"_qs, u"<think>x</think>"_qs, u"<think>a</think> b"_qs},
        {u"```text\nHello\n```"_qs, u"hello"_qs, u"Hello"_qs},
        {u"```\nHello\n```"_qs, u"```\nhello\n```"_qs, u"```\nHello\n```"_qs},
        {u"See:\n```\ncode\n```"_qs, u"hello"_qs, u"See:\n```\ncode\n```"_qs},
        {u"```\na\n```\nb\n```\nc\n```"_qs, u"hello"_qs, u"```\na\n```\nb\n```\nc\n```"_qs},
        {u"\"Hello\""_qs, u"hello"_qs, u"\"Hello\""_qs},
        {u"a\nb"_qs, u"a\r\nb"_qs, u"a\r\nb"_qs},
        {u"a\r\nb"_qs, u"a\nb"_qs, u"a\nb"_qs},
        {u"a\x1b[2Jb\x07"_qs, u"ab"_qs, u"a[2Jb"_qs},
        {u"a\u202eb\u0085"_qs, u"ab"_qs, u"ab"_qs},
        {u"a\u202eb"_qs, u"\u202eab"_qs, u"a\u202eb"_qs},
    };
    for (const auto &[answer, text, expected] : cases)
        EXPECT_EQ(cleanedAnswer(answer, text, u"d"_qs), expected) << qPrintable(answer);
}

TEST(ServerSentEvents, ReadsAnyLineEndAndAnyPiece)
{
    const QByteArray stream = ": hello\ndata: one\r\n\r\ndata:two\rdata: lines\r\revent: x\nid\n\n"
                              "data\n\ndata:  three";
    const QList<QByteArray> expected{"one", "two\nlines", "", " three"};
    for (const qsizetype size : {qsizetype(1), qsizetype(3), stream.size()}) {
        ServerSentEvents parser;
        QList<QByteArray> events;
        for (qsizetype i = 0; i < stream.size(); i += size)
            events += parser.feed(stream.mid(i, size));
        EXPECT_EQ(events + parser.finish(), expected) << size;
    }
}

} // namespace
