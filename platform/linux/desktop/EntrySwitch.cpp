// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/desktop/EntrySwitch.h"

#include <QList>

#include <algorithm>

#include <optional>

namespace platform::linux_
{

namespace
{

constexpr char variable[] = "QTWEBENGINE_CHROMIUM_FLAGS=--force-renderer-accessibility";
constexpr char amendedMark[] = "X-Quillet-TextAccess=amended";
constexpr char createdMark[] = "X-Quillet-TextAccess=created";
/// Keeps what the entry said about D-Bus activation while the switch is on.
constexpr char activationMark[] = "X-Quillet-DBusActivatable=";
constexpr char activation[] = "DBusActivatable=";

struct Word {
    qsizetype begin = 0;
    qsizetype end = 0;
};

/// The words of a command; one in double quotes may hold spaces.
QList<Word> wordsOf(const QByteArray &command)
{
    QList<Word> words;
    qsizetype i = 0;
    while (i < command.size()) {
        if (command[i] == ' ') {
            ++i;
            continue;
        }
        Word word{i, i};
        bool quoted = false;
        for (; i < command.size() && (quoted || command[i] != ' '); ++i) {
            if (command[i] == '\\')
                ++i;
            else if (command[i] == '"')
                quoted = !quoted;
        }
        word.end = std::min(i, command.size());
        words.append(word);
    }
    return words;
}

QByteArray textOf(const QByteArray &command, Word word)
{
    QByteArray text = command.sliced(word.begin, word.end - word.begin);
    if (text.size() >= 2 && text.startsWith('"') && text.endsWith('"'))
        text = text.sliced(1, text.size() - 2);
    return text;
}

/// The word of the command after which the program's own options may stand: the program, which may
/// follow env(1) or Flatpak's "run" and their words.
std::optional<Word> programWord(const QByteArray &command, const QList<Word> &words)
{
    bool afterRun = false;
    bool isFlatpak = false;
    for (const Word word : words) {
        const QByteArray text = textOf(command, word);
        const QByteArray name = text.sliced(text.lastIndexOf('/') + 1);
        const bool isAssignment = text.indexOf('=') > 0 && !text.startsWith('/');
        if (name == "env" || isAssignment || text.startsWith('-'))
            continue;
        if (name == "flatpak") {
            isFlatpak = true;
            continue;
        }
        if (isFlatpak && !afterRun) {
            afterRun = text == "run";
            continue;
        }
        return word;
    }
    return std::nullopt;
}

QByteArray commandWithSwitch(const QByteArray &command, SwitchKind kind)
{
    if (command.contains(accessOption))
        return command;
    const std::optional<Word> program = programWord(command, wordsOf(command));
    if (!program)
        return command;
    QByteArray changed = command;
    if (kind == SwitchKind::Option)
        changed.insert(program->end, QByteArray(" ") + accessOption);
    else
        changed.prepend(QByteArray("env ") + variable + ' ');
    return changed;
}

QByteArray commandWithoutSwitch(QByteArray command)
{
    command.replace(QByteArray("env ") + variable + ' ', QByteArray());
    return command.replace(QByteArray(" ") + accessOption, QByteArray());
}

constexpr char exec[] = "Exec=";

} // namespace

QByteArray entryWithSwitch(const QByteArray &entry, SwitchKind kind, bool createdByUs)
{
    if (hasOurSwitch(entry))
        return entry;
    QList<QByteArray> lines;
    bool marked = false;
    const QList<QByteArray> before = entry.split('\n');
    for (const QByteArray &line : before) {
        if (line.startsWith(exec))
            lines.append(exec + commandWithSwitch(line.sliced(qstrlen(exec)), kind));
        else if (line.startsWith(activation))
            lines.append({QByteArray(activation) + "false",
                          activationMark + line.sliced(qstrlen(activation))});
        else
            lines.append(line);
        if (!marked && line.trimmed() == "[Desktop Entry]") {
            lines.append(createdByUs ? createdMark : amendedMark);
            marked = true;
        }
    }
    return lines.join('\n');
}

QByteArray entryWithoutSwitch(const QByteArray &entry)
{
    if (!hasOurSwitch(entry))
        return entry;
    QList<QByteArray> lines;
    const QList<QByteArray> before = entry.split('\n');
    for (const QByteArray &line : before) {
        if (line == amendedMark || line == createdMark)
            continue;
        if (line.startsWith(exec))
            lines.append(exec + commandWithoutSwitch(line.sliced(qstrlen(exec))));
        else if (line.startsWith(activationMark) && !lines.isEmpty())
            lines.last() = activation + line.sliced(qstrlen(activationMark));
        else
            lines.append(line);
    }
    return lines.join('\n');
}

bool hasOurSwitch(const QByteArray &entry)
{
    const QList<QByteArray> lines = entry.split('\n');
    return lines.contains(amendedMark) || lines.contains(createdMark);
}

bool wasCreatedByUs(const QByteArray &entry)
{
    return entry.split('\n').contains(createdMark);
}

} // namespace platform::linux_
