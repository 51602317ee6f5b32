// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "Commands.h"

#include <QHash>
#include <QString>

namespace
{

const QHash<QString, CommandKind> &kinds()
{
    static const auto table = [] {
        QHash<QString, CommandKind> result;
        const auto add = [&result](CommandKind kind,
                                   std::initializer_list<const char16_t *> names) {
            for (const auto *name : names)
                result.insert(QString::fromUtf16(name), kind);
        };
        add(CommandKind::Rewrite, {u"quick-improve", u"check-grammar", u"elevate", u"expand",
                                   u"clear", u"concise", u"emojify"});
        add(CommandKind::Tone, {u"friendly", u"happy", u"confident", u"romantic", u"sarcastic",
                                u"professional", u"witty", u"flirty"});
        add(CommandKind::Reply, {u"reply-msg-copy"});
        add(CommandKind::Translate,
            {u"english",  u"italian",   u"french",     u"spanish", u"catalan",   u"german",
             u"chinese",  u"japanese",  u"portuguese", u"russian", u"greek",     u"hindi",
             u"arabic",   u"ukrainian", u"korean",     u"polish",  u"hungarian", u"armenian",
             u"croatian", u"thai",      u"malay",      u"bengali", u"vietnamese"});
        add(CommandKind::More, {u"settings", u"send-feedback", u"share", u"rate"});
        return result;
    }();
    return table;
}

} // namespace

std::optional<CommandKind> commandKind(QStringView command)
{
    const auto found = kinds().constFind(command.toString());
    return found == kinds().cend() ? std::nullopt : std::optional(*found);
}
