// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "commands/OwnCommands.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(OwnCommands, TheFileIsReadAsItWasWrittenAndAsAPersonWritesIt)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"quillet/commands.ini"_qs);
    EXPECT_TRUE(OwnCommands::read(path).isEmpty());
    const QList<OwnCommand> commands = {{u"own-rhyme"_qs, u"Reim dich!"_qs,
                                         u"Rhyme; \"well\" = 100 %, [always]\n# two\n[own-x]"_qs,
                                         u"a-model"_qs, u"Ctrl+1"_qs},
                                        {u"own-2"_qs, u"短く"_qs, u"短くする"_qs, {}, {}}};
    ASSERT_TRUE(OwnCommands::write(path, commands));
    EXPECT_EQ(OwnCommands::read(path), commands);

    QFile file(path);
    const QString copy = path + u'~';
    ASSERT_TRUE(OwnCommands::write(path, commands.first(1)));
    EXPECT_FALSE(QFile::exists(copy)) << "nothing else was in it";
    const QByteArray users = "; mine\n[own-a]\nname = A\ninstruction = do\nplace = here\n";
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(users);
    file.close();
    for (int i = 0; i < 2; ++i)
        ASSERT_TRUE(OwnCommands::write(path, commands));
    QFile kept(copy);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), users);
    EXPECT_FALSE(OwnCommands::write(QFileInfo(path).path(), commands)) << "no file to replace";

    const QString first = QStringLiteral("[own-a]\r\nname=A\r\ninstruction=do\r\n");
    for (const char *rest :
         {"[own-a]\nname=twice\ninstruction=x", "[own-once]\nname=no\ninstruction=x",
          "[friendly]\nname=theirs\ninstruction=x", "[own-b]\nname=without an instruction",
          "[own-B ../]\nname=b\ninstruction=x", "other = x\n  continued\nno value", "\0\x01[["}) {
        const QList<OwnCommand> read = OwnCommands::parsed(first + QString::fromUtf8(rest));
        EXPECT_EQ(read, (QList<OwnCommand>{{u"own-a"_qs, u"A"_qs, u"do"_qs, {}, {}}})) << rest;
    }
}

TEST(OwnCommands, ANewIdentifierTellsTheNameAndIsFree)
{
    const QStringList taken = {u"own-make-it-rhyme"_qs, u"own-command"_qs};
    for (const auto &[name, identifier] :
         {std::pair(u"Étude: C++!"_qs, u"own-etude-c"_qs),
          std::pair(u"Make it rhyme"_qs, u"own-make-it-rhyme-2"_qs),
          std::pair(u"短く"_qs, u"own-command-2"_qs), std::pair(u"Once"_qs, u"own-once-2"_qs)}) {
        EXPECT_EQ(OwnCommands::newIdentifier(name, taken), identifier);
        EXPECT_TRUE(OwnCommands::isOwn(OwnCommands::newIdentifier(name, taken)));
    }
}
