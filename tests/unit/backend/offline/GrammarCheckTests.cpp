// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "TestData.h"

namespace
{

QString checked(const QString &text)
{
    const OfflineAnswer answer = engine().answer(QStringLiteral("check-grammar"), text);
    EXPECT_TRUE(answer.supported);
    return answer.text;
}

std::string utf8(const QString &text)
{
    return text.toStdString();
}

TEST(GrammarCheck, CorrectsMistakes)
{
    const auto rows = testRows("mistakes.tsv");
    EXPECT_GT(rows.size(), 50);
    for (const QStringList &columns : rows) {
        ASSERT_EQ(columns.size(), 2) << utf8(columns.join(u'\t'));
        EXPECT_EQ(utf8(checked(columns.at(0))), utf8(columns.at(1)));
        EXPECT_EQ(utf8(checked(columns.at(1))), utf8(columns.at(1))) << "not stable";
    }
}

TEST(GrammarCheck, LeavesCorrectTextAlone)
{
    const QString all = testData("correct.txt");
    EXPECT_TRUE(checked(all) == all);
    for (const QString &paragraph : all.split(QStringLiteral("\n\n")))
        EXPECT_EQ(utf8(checked(paragraph)), utf8(paragraph));
}

TEST(GrammarCheck, KeepsEveryUnitOfLayout)
{
    for (const QString &text :
         {QStringLiteral("\uFEFFIt is late.\r\n\r\n\tWe go home.  \r\n"),
          QStringLiteral("One\u00A0hour,\u202Ftwo hours.\n\n\n  Three hours. \t \n"),
          QStringLiteral("   "), QStringLiteral("\r"), QString()})
        EXPECT_EQ(checked(text), text);
    EXPECT_EQ(utf8(checked(QStringLiteral("\tWe recieve it.\r\n\r\n  It isnt here.\r\n"))),
              "\tWe receive it.\r\n\r\n  It isn't here.\r\n");
    EXPECT_EQ(utf8(checked(QStringLiteral("We saw the\nthe end of of\r\nit."))),
              "We saw\nthe end of\r\nit.");
}

TEST(GrammarCheck, SurvivesAnyInput)
{
    const QString broken = QStringLiteral("a ") + QChar(0xD800) + QStringLiteral(" the the ") +
                           QChar(0xDC00) + QChar(0) + QStringLiteral(" recieve");
    EXPECT_TRUE(checked(broken).contains(QChar(0xD800)));

    const QString letters(1'000'000, u'x');
    EXPECT_EQ(checked(letters), letters);
    const QString ticks = QStringLiteral("`a``b ").repeated(150'000);
    EXPECT_EQ(checked(ticks), ticks);
    const QString marks = QStringLiteral("<a").repeated(300'000);
    EXPECT_EQ(checked(marks), marks);
    const QString right = QStringLiteral("We receive it, and they don't. ").repeated(30'000);
    const QString wrong = QStringLiteral("We recieve it ,and they dont. ").repeated(30'000);
    EXPECT_TRUE(checked(wrong) == right);
}

TEST(GrammarCheck, LeavesOffWhenItIsStopped)
{
    std::stop_source stop;
    stop.request_stop();
    const QString text = u"She go there becuase i definately told her."_qs;
    for (const QString &command : {u"check-grammar"_qs, u"concise"_qs})
        EXPECT_NE(engine().answer(command, text).text,
                  engine().answer(command, text, stop.get_token()).text);
}

} // namespace
