// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/Localisation.h"
#include "commands/Catalogue.h"

#include <QDirIterator>
#include <QFile>
#include <QKeySequence>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace
{

QString title(const char *identifier)
{
    return localized(QString::fromUtf8(identifier));
}

TEST(Localisation, EveryCommandHasATitleThatIsNotItsIdentifier)
{
    QStringList identifiers = CommandCatalogue::tools();
    for (const QStringList &options : CommandCatalogue::toolOptions())
        identifiers += options;
    identifiers += {QStringLiteral("cancel"), QStringLiteral("reload"), QStringLiteral("apply")};
    for (const QString &identifier : identifiers) {
        const QString text = localized(identifier);
        EXPECT_NE(text, identifier);
        EXPECT_TRUE(text.at(0).isUpper()) << identifier.toStdString();
        EXPECT_FALSE(text.contains(u'-')) << identifier.toStdString();
    }
    EXPECT_EQ(title("quick-improve"), QStringLiteral("Quick improve"));
}

// The result area's buttons are told apart by their titles in lower case.
TEST(Localisation, ResultButtonsStayRecognisable)
{
    for (const char *identifier : {"cancel", "reload"})
        EXPECT_EQ(title(identifier).toLower(), QString::fromUtf8(identifier));
}

TEST(Localisation, WhatIsNotInTheTableIsShownAsItIs)
{
    for (const char *text : {"no-such-command", "Improve", "", "déjà vu 👍"})
        EXPECT_EQ(title(text), QString::fromUtf8(text));
}

TEST(Localisation, AShortcutIsWrittenAsOnTheKeyboard)
{
    installTranslations();
    EXPECT_EQ(QKeySequence(QStringLiteral("Meta+Shift+Q")).toString(QKeySequence::NativeText),
              QStringLiteral("Super+Shift+Q"));
    EXPECT_EQ(QKeySequence(QStringLiteral("Ctrl+Q")).toString(QKeySequence::NativeText),
              QStringLiteral("Ctrl+Q"));
}

QString contents(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

// A text without an entry cannot be translated, and no run of the program shows it.
TEST(Localisation, EveryTextOfTheSourcesIsInTheTable)
{
    const QString table = contents(QStringLiteral(QUILLET_TITLES));
    const QRegularExpression call(
        QStringLiteral(R"((?:localized|\btr)\(\s*((?:"(?:[^"\\]|\\.)*"\s*)+)\))"));
    const QRegularExpression joint(QStringLiteral(R"("\s*")"));
    int found = 0;
    QStringList sources;
    for (const char *folder : {"/quillet", "/platform"}) {
        QDirIterator files(QStringLiteral(QUILLET_SOURCES) + QString::fromLatin1(folder),
                           {QStringLiteral("*.cpp")}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            sources.append(contents(files.next()));
    }
    for (const QString &source : sources) {
        for (auto it = call.globalMatch(source); it.hasNext(); ++found) {
            QString text = it.next().captured(1).trimmed().remove(joint);
            text = text.sliced(1, text.size() - 2)
                       .replace(QStringLiteral("\\n"), QStringLiteral("\n"))
                       .replace(QStringLiteral("\\\""), QStringLiteral("\""));
            EXPECT_TRUE(table.contains(QStringLiteral("<source>%1</source>")
                                           .arg(text.toHtmlEscaped().replace(
                                               QStringLiteral("&quot;"), QStringLiteral("\"")))))
                << text.toStdString();
        }
    }
    EXPECT_GT(found, 20) << "the sources are looked through";
}

} // namespace
