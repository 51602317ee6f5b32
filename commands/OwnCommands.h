// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

/// A command that the user has made.
struct OwnCommand {
    /// What the writing backend gets: "own-" and lower-case ASCII letters, digits and hyphens.
    QString identifier;
    QString name;
    /// What a language model is told to do with the text; may have several lines.
    QString instruction;
    /// The model's name at its server; empty for the one that is set for all commands.
    QString model;
    /// The keys that choose the command in the popup, as portable text; may be empty.
    QString key;
    bool operator==(const OwnCommand &) const = default;
};

/// The commands of the user, kept in one file that the settings write, the popup shows and the
/// backend reads. The file is what is exported and imported:
///
///     [own-rhyme]
///     name = Make it rhyme
///     instruction = Rewrite the text so that it rhymes.
///       An indented line continues the value before it.
///     model = the-model
///     key = Ctrl+1
///
/// Lines that say nothing else, and commands without a name or an instruction, are left out.
/// Any thread.
namespace OwnCommands
{

/// The tool whose options are these commands.
inline constexpr QStringView tool = u"mine";
/// The command whose instruction comes with the request and is kept nowhere.
inline constexpr QStringView once = u"own-once";

/// commands.ini in the user's configuration folder for Quillet.
QString defaultPath();
/// Whether `command` can be the identifier of such a command, or is `once`.
bool isOwn(QStringView command);

/// The commands in a file's text. At most 100, each value at most 4,000 characters.
QList<OwnCommand> parsed(const QString &text);
/// Empty as well where there is no file that can be read. Reads at most 1 MB.
QList<OwnCommand> read(const QString &path);
/// Replaces the file. What the user has written into it besides, such as comments, stays in a copy
/// beside it, with "~" at the end of its name. False: it cannot be written or copied, and stands as
/// it was.
bool write(const QString &path, const QList<OwnCommand> &commands);
/// An identifier that tells the name as well as it can, and is not among `taken`.
QString newIdentifier(const QString &name, const QStringList &taken);

} // namespace OwnCommands
