// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "commands/Catalogue.h"

#include "backend/model/Prompts.h"
#include "backend/offline/OfflineEngine.h"

#include <QSet>
#include <gtest/gtest.h>

namespace
{

TEST(Catalogue, EveryCommandStandsBelowOneTool)
{
    const QStringList &tools = CommandCatalogue::tools();
    const auto &options = CommandCatalogue::toolOptions();
    EXPECT_EQ(tools.join(u' '), u"improve tone-changer reply translate more"_qs);
    EXPECT_EQ(options.keys().size(), tools.size());
    QStringList all;
    for (const QString &tool : tools) {
        EXPECT_FALSE(options[tool].isEmpty());
        EXPECT_FALSE(commandKind(tool)) << "a tool is never sent";
        all += options[tool];
    }
    EXPECT_EQ(all.size(), qsizetype(allCommands.size()));
    EXPECT_EQ(QSet<QString>(all.cbegin(), all.cend()).size(), all.size());
    EXPECT_EQ(options[u"improve"_qs].first(), u"quick-improve"_qs);
    EXPECT_EQ(options[u"more"_qs].last(), u"rate"_qs);
    EXPECT_EQ(commandKind(u"friendly"), CommandKind::Tone);
    for (const char16_t *stranger : {u"Clear", u"", u"clear "})
        EXPECT_FALSE(commandKind(stranger));
}

/// Each side of the program knows every command: a model has a task of its own for it, and the
/// offline engine works on it or names what it would take.
TEST(Catalogue, BackendKnowsEveryCommand)
{
    const QString nowhere = u"/nonexistent"_qs;
    const OfflineEngine offline({nowhere, nowhere, nowhere, {}});
    QSet<QString> tasks;
    int writing = 0;
    for (const Command &command : allCommands) {
        if (command.kind == CommandKind::More)
            continue;
        ++writing;
        const QString name = QString::fromLatin1(command.identifier.data());
        const QString system = makePrompt(name, u"x"_qs, u"d"_qs).system;
        const QString task = system.section(u"Task: "_qs, 1).section(u'\n', 0, 0);
        EXPECT_GT(task.size(), 60) << command.identifier;
        tasks.insert(task);
        EXPECT_GE(expectedGrowth(name), 1.0) << command.identifier;
        const bool translation = command.kind == CommandKind::Translate;
        // A translation must not be told to stay in its language.
        EXPECT_NE(system.contains(u"in the language of the text"), translation)
            << command.identifier;
        const OfflineAnswer answer = offline.answer(name, u"x"_qs);
        EXPECT_FALSE(answer.text.isEmpty()) << command.identifier;
        EXPECT_FALSE(!translation && answer.text.contains(u"Translating into"))
            << command.identifier;
    }
    EXPECT_EQ(tasks.size(), writing);
}

} // namespace
