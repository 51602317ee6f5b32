#include "quillet/localisation/Localisation.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace
{

QString title(const char *identifier)
{
    return localized(QString::fromUtf8(identifier));
}

TEST(Localisation, EveryCommandHasATitleThatIsNotItsIdentifier)
{
    const char *identifiers[] = {
        "improve",        "tone-changer",  "reply",        "translate",  "more",
        "quick-improve",  "check-grammar", "elevate",      "expand",     "clear",
        "concise",        "emojify",       "friendly",     "happy",      "confident",
        "romantic",       "sarcastic",     "professional", "witty",      "flirty",
        "reply-msg-copy", "english",       "italian",      "french",     "spanish",
        "catalan",        "german",        "chinese",      "japanese",   "portuguese",
        "russian",        "greek",         "hindi",        "arabic",     "ukrainian",
        "korean",         "polish",        "hungarian",    "armenian",   "croatian",
        "thai",           "malay",         "bengali",      "vietnamese", "settings",
        "send-feedback",  "share",         "rate",         "cancel",     "reload",
        "apply"};
    for (const char *identifier : identifiers) {
        const QString text = title(identifier);
        EXPECT_NE(text, QString::fromUtf8(identifier));
        EXPECT_TRUE(text.at(0).isUpper()) << identifier;
        EXPECT_FALSE(text.contains(u'-')) << identifier;
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
