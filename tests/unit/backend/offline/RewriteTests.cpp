// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "TestData.h"

#include <thread>
#include <vector>

namespace
{

constexpr const char *nothingToChange = "\u24D8 Nothing to change";

TEST(Rewrite, ReplacesPhrasesInFormAndCase)
{
    const auto rows = testRows("rewrites.tsv");
    EXPECT_GT(rows.size(), 20);
    for (const QStringList &columns : rows) {
        ASSERT_EQ(columns.size(), 3) << columns.join(u'\t').toStdString();
        const OfflineAnswer answer = engine().answer(columns.at(0), columns.at(1));
        EXPECT_TRUE(answer.supported);
        const std::string expected = columns.at(2) == columns.at(1) ? std::string(nothingToChange)
                                                                    : columns.at(2).toStdString();
        EXPECT_EQ(answer.text.toStdString(), expected) << columns.at(0).toStdString();
        EXPECT_EQ(engine().answer(columns.at(0), columns.at(2)).text.toStdString(), nothingToChange)
            << columns.at(0).toStdString() << " is not stable";
    }
}

TEST(Rewrite, LeavesWhatIsNotEnglishProse)
{
    const QString text =
        QStringLiteral("Hola, no sé si la casa de mi hermano está cerca de la playa.\r\n\r\n"
                       "```\nin order to, very good, don't\n```\r\n`in order to` "
                       "https://a.example/in-order-to\t ");
    for (const char *command : {"quick-improve", "concise", "clear", "elevate", "professional",
                                "emojify", "check-grammar"}) {
        const OfflineAnswer answer = engine().answer(QString::fromUtf8(command), text);
        EXPECT_TRUE(answer.supported);
        const bool style = qstrcmp(command, "check-grammar") != 0;
        EXPECT_EQ(answer.text.toStdString(), style ? nothingToChange : text.toStdString())
            << command;
    }
}

TEST(Rewrite, KeepsTheLinesOfAPhrase)
{
    const OfflineAnswer answer =
        engine().answer(QStringLiteral("concise"),
                        QStringLiteral("We did it in order\nto win, due to the\nfact that, well."));
    EXPECT_EQ(answer.text.toStdString(), "We did it to\nwin, due to the\nfact that, well.");
}

TEST(Rewrite, SaysWhatNeedsAModel)
{
    for (const char *command :
         {"romantic", "sarcastic", "witty", "flirty", "reply-msg-copy", "german", "chinese", "?"}) {
        for (const QString &text : {QStringLiteral("Hello there."), QString()}) {
            const OfflineAnswer answer = engine().answer(QString::fromUtf8(command), text);
            EXPECT_FALSE(answer.supported) << command;
            EXPECT_TRUE(answer.text.contains(u"~/.config/quillet/backend.ini")) << command;
            EXPECT_TRUE(answer.text.endsWith(u'.')) << command;
        }
    }
    const OfflineAnswer empty = engine().answer(QStringLiteral("clear"), QString());
    EXPECT_TRUE(empty.supported);
    EXPECT_TRUE(empty.text.isEmpty());
}

TEST(Rewrite, AnswersSeveralThreadsAtOnce)
{
    const OfflineEngine fresh;
    const QString text = QStringLiteral("The colour of teh house are nice ,realy. It's very good.");
    std::vector<QString> answers(8);
    std::vector<std::thread> threads;
    threads.reserve(answers.size());
    for (QString &answer : answers) {
        threads.emplace_back([&] { answer = fresh.answer(QStringLiteral("elevate"), text).text; });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (const QString &answer : answers)
        EXPECT_EQ(answer.toStdString(), answers.front().toStdString());
    EXPECT_TRUE(answers.front().contains(u"excellent"));
}

TEST(Rewrite, WorksWithoutDictionaries)
{
    OfflinePaths paths;
    paths.dictionaries = QStringLiteral("/nonexistent");
    const OfflineEngine bare(paths);
    const QString text = QStringLiteral("The recalcitrant wombat recieved an apple.");
    EXPECT_EQ(bare.answer(QStringLiteral("check-grammar"), text).text.toStdString(),
              "The recalcitrant wombat received an apple.");
}

} // namespace
