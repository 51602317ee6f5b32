// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/engine/CommonCommands.h"

QString commonCommandAnswer(const QString &command)
{
    if (command == u"send-feedback") {
        return QStringLiteral(
            "To tell us what you think, choose \"Send Feedback\" in Quillet's menu: it opens a "
            "letter to us in your mail program. Say what you wrote, what you expected and what "
            "you got. Nothing is sent from here.");
    }
    if (command == u"share") {
        return QStringLiteral(
            "I write with Quillet: it improves, translates and answers text in any program, "
            "right where I type. It works offline, and with a language model of your own.");
    }
    if (command == u"rate") {
        return QStringLiteral(
            "Thank you for thinking of it. Quillet has no store page to rate it on; a line about "
            "what works well and what does not, through \"Send Feedback\" in Quillet's menu, "
            "helps most.");
    }
    return {};
}
