// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/localisation/Localisation.h"
#include "commands/Catalogue.h"

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

} // namespace
