// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "TestData.h"

#include "backend/offline/rules/RuleFile.h"

namespace
{

QString checkedBy(const OfflineEngine &checker, const QString &text)
{
    return checker.answer(QStringLiteral("check-grammar"), text).text;
}

OfflineEngine engineWithout(const QStringList &rules)
{
    OfflinePaths paths;
    paths.rulesOff = rules;
    return OfflineEngine(paths);
}

/// The examples that each rule's file gives, and its switch.
TEST(Rules, DoWhatTheirFilesShow)
{
    QStringList all;
    for (const offline::RuleFile &file : offline::ruleFiles())
        all.append(file.id);
    EXPECT_GE(all.size(), 20);
    const OfflineEngine none = engineWithout(all);
    for (const offline::RuleFile &file : offline::ruleFiles()) {
        const std::string id = file.id.toStdString();
        EXPECT_FALSE(file.name.isEmpty()) << id;
        EXPECT_TRUE(file.about.endsWith(u'.')) << id;
        EXPECT_FALSE(file.wrong.isEmpty()) << id;
        EXPECT_FALSE(file.right.isEmpty()) << id;
        QStringList others = all;
        others.removeOne(file.id);
        const OfflineEngine alone = engineWithout(others);
        for (const auto &[wrong, right] : file.wrong) {
            EXPECT_EQ(checkedBy(alone, wrong).toStdString(), right.toStdString()) << id;
            EXPECT_EQ(checkedBy(engine(), wrong).toStdString(), right.toStdString()) << id;
            EXPECT_EQ(checkedBy(none, wrong).toStdString(), wrong.toStdString()) << id;
        }
        for (const QString &text : file.right)
            EXPECT_EQ(checkedBy(engine(), text).toStdString(), text.toStdString()) << id;
    }
}

TEST(Rules, NeverMakeANewMistake)
{
    const struct {
        const char *text;
        const char *result;
    } cases[] = {
        {"this are my first try , i has a alot of mistake",
         "This is my first try, I have a lot of mistakes"},
        {"We saw the alot of it.", "We saw the alot of it."},
    };
    for (const auto &item : cases) {
        const QString result = checkedBy(engine(), QString::fromUtf8(item.text));
        EXPECT_EQ(result.toStdString(), item.result);
        EXPECT_EQ(checkedBy(engine(), result).toStdString(), item.result) << "not stable";
    }
    EXPECT_EQ(engine()
                  .answer(QStringLiteral("professional"),
                          QStringLiteral("you're invoice is late and I can't pay it."))
                  .text.toStdString(),
              "Your invoice is late and I cannot pay it.");
}

} // namespace
