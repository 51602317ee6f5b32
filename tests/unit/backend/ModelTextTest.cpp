// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/ServerSentEvents.h"
#include "backend/model/TextSplitter.h"

#include <gtest/gtest.h>

namespace
{

/// A fourth of a token for a letter of ASCII, one for a unit below U+0800 or of a surrogate pair,
/// one and a half for the others.
double tokens(const QString &text)
{
    double sum = 0;
    for (const QChar c : text)
        sum += c < QChar(0x80) ? 0.25 : c < QChar(0x800) || c.isSurrogate() ? 1 : 1.5;
    return sum;
}

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
        u"x"_qs + u"𝒳"_qs.repeated(900),
        u"xy"_qs + u"𝒳"_qs.repeated(900),
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
            EXPECT_LE(tokens(part.text), 200);
            EXPECT_EQ(part.text, part.text.trimmed());
            EXPECT_FALSE(part.text.front().isLowSurrogate());
            EXPECT_FALSE(part.text.front() == QChar(0x200d)) << "cut inside a character";
        }
        EXPECT_EQ(joined, text);
    }
}

TEST(TextSplitter, ComesToAnEndWithTheSmallestParts)
{
    const QString text = u"漢字𝒳 x"_qs;
    QString joined;
    const auto parts = splitText(text, 1);
    for (const TextPart &part : parts)
        joined += part.text;
    EXPECT_EQ(joined, text);
    EXPECT_FALSE(shortened(text, 2).isEmpty());
}

TEST(TextSplitter, CutsBetweenParagraphsThenLinesThenSentences)
{
    const QString long1 = QString(500, u'a');
    const auto first = [](const QString &text) { return splitText(text, 200).first().text; };
    EXPECT_EQ(first(long1 + u"\n \nb b. c\nd "_qs + long1), long1);
    EXPECT_EQ(first(long1 + u"\nb b. c "_qs + long1), long1);
    EXPECT_EQ(first(long1 + u" b b. c "_qs + long1), long1 + u" b b."_qs);
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
