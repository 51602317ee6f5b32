// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>
#include <optional>
#include <string_view>

/// What a command asks for. Each kind has one tool in the popup's top row.
enum class CommandKind { Rewrite, Tone, Reply, Translate, More };

struct Command {
    std::string_view identifier;
    CommandKind kind;
};

/// All commands, in the order in which the popup shows them: the one list that the popup's
/// catalogue, the backend, its prompts and the offline engine are made from or checked against. An
/// identifier is at once the key of a button's title, the button's accessible name, and the command
/// that the writing backend gets.
inline constexpr auto allCommands = std::to_array<Command>({
    {"quick-improve", CommandKind::Rewrite},
    {"check-grammar", CommandKind::Rewrite},
    {"elevate", CommandKind::Rewrite},
    {"expand", CommandKind::Rewrite},
    {"clear", CommandKind::Rewrite},
    {"concise", CommandKind::Rewrite},
    {"emojify", CommandKind::Rewrite},
    {"friendly", CommandKind::Tone},
    {"happy", CommandKind::Tone},
    {"confident", CommandKind::Tone},
    {"romantic", CommandKind::Tone},
    {"sarcastic", CommandKind::Tone},
    {"professional", CommandKind::Tone},
    {"witty", CommandKind::Tone},
    {"flirty", CommandKind::Tone},
    {"reply-msg-copy", CommandKind::Reply},
    {"english", CommandKind::Translate},
    {"italian", CommandKind::Translate},
    {"french", CommandKind::Translate},
    {"spanish", CommandKind::Translate},
    {"catalan", CommandKind::Translate},
    {"german", CommandKind::Translate},
    {"chinese", CommandKind::Translate},
    {"japanese", CommandKind::Translate},
    {"portuguese", CommandKind::Translate},
    {"russian", CommandKind::Translate},
    {"greek", CommandKind::Translate},
    {"hindi", CommandKind::Translate},
    {"arabic", CommandKind::Translate},
    {"ukrainian", CommandKind::Translate},
    {"korean", CommandKind::Translate},
    {"polish", CommandKind::Translate},
    {"hungarian", CommandKind::Translate},
    {"armenian", CommandKind::Translate},
    {"croatian", CommandKind::Translate},
    {"thai", CommandKind::Translate},
    {"malay", CommandKind::Translate},
    {"bengali", CommandKind::Translate},
    {"vietnamese", CommandKind::Translate},
    {"settings", CommandKind::More},
    {"send-feedback", CommandKind::More},
    {"share", CommandKind::More},
    {"rate", CommandKind::More},
});

/// Whether a model gets a task of its own for commands of this kind. Translations share one, and
/// the commands about Quillet itself never reach a model.
constexpr bool hasOwnTask(CommandKind kind)
{
    return kind != CommandKind::Translate && kind != CommandKind::More;
}

/// The kind of a command identifier; nothing when there is no such command.
std::optional<CommandKind> commandKind(QStringView command);

/// The fixed vocabulary of the popup. A tool is never sent, only the option that was chosen.
namespace CommandCatalogue
{

/// The tools in the order of the popup's top row.
const QStringList &tools();

/// Each tool's options in display order.
const QMap<QString, QStringList> &toolOptions();

} // namespace CommandCatalogue
