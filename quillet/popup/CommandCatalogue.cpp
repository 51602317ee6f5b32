// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/CommandCatalogue.h"

namespace
{

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

const QStringList &CommandCatalogue::tools()
{
    static const QStringList list = words("improve tone-changer reply translate more");
    return list;
}

const QMap<QString, QStringList> &CommandCatalogue::toolOptions()
{
    static const QMap<QString, QStringList> options = {
        {QStringLiteral("improve"),
         words("quick-improve check-grammar elevate expand clear concise emojify")},
        {QStringLiteral("tone-changer"),
         words("friendly happy confident romantic sarcastic professional witty flirty")},
        {QStringLiteral("reply"), words("reply-msg-copy")},
        {QStringLiteral("translate"),
         words("english italian french spanish catalan german chinese japanese portuguese russian "
               "greek hindi arabic ukrainian korean polish hungarian armenian croatian thai malay "
               "bengali vietnamese")},
        {QStringLiteral("more"), words("settings send-feedback share rate")},
    };
    return options;
}
