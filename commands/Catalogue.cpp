// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "commands/Catalogue.h"

namespace
{

struct Tool {
    const char *identifier;
    CommandKind kind;
};

constexpr Tool allTools[] = {
    {"improve", CommandKind::Rewrite}, {"tone-changer", CommandKind::Tone},
    {"reply", CommandKind::Reply},     {"translate", CommandKind::Translate},
    {"more", CommandKind::More},
};

QString text(std::string_view identifier)
{
    return QString::fromLatin1(identifier.data(), qsizetype(identifier.size()));
}

} // namespace

std::optional<CommandKind> commandKind(QStringView command)
{
    for (const Command &known : allCommands) {
        if (command ==
            QLatin1StringView(known.identifier.data(), qsizetype(known.identifier.size())))
            return known.kind;
    }
    return std::nullopt;
}

const QStringList &CommandCatalogue::tools()
{
    static const QStringList list = [] {
        QStringList names;
        for (const Tool &tool : allTools)
            names += QString::fromLatin1(tool.identifier);
        return names;
    }();
    return list;
}

const QMap<QString, QStringList> &CommandCatalogue::toolOptions()
{
    static const QMap<QString, QStringList> options = [] {
        QMap<QString, QStringList> result;
        for (const Tool &tool : allTools) {
            QStringList &names = result[QString::fromLatin1(tool.identifier)];
            for (const Command &command : allCommands) {
                if (command.kind == tool.kind)
                    names += text(command.identifier);
            }
        }
        return result;
    }();
    return options;
}
