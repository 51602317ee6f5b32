// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/desktop/ProgramEntry.h"

#include "platform/linux/desktop/EntrySwitch.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <algorithm>

namespace platform::linux_
{

namespace
{

QByteArray commandLine(std::int32_t pid)
{
    QFile file(QStringLiteral("/proc/%1/cmdline").arg(pid));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Process {
    /// What a desktop entry may call the program: its file, and what it was started as, which for a
    /// script is the script and not its interpreter.
    QStringList programs;
    QStringList arguments;
};

Process processOf(std::int32_t pid)
{
    Process process;
    const QList<QByteArray> arguments = commandLine(pid).split('\0');
    for (const QByteArray &argument : arguments)
        process.arguments.append(QFile::decodeName(argument));
    QStringList &programs = process.programs;
    for (int i = 0; i < arguments.size() && i < 2; ++i) {
        if (i == 0 || !arguments[i].startsWith('-'))
            programs.append(QFileInfo(process.arguments[i]).fileName());
    }
    programs.append(
        QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(pid))).fileName());
    // A start script often runs a binary beside itself that has its name and this suffix.
    for (const QString &program : QStringList(programs)) {
        if (program.endsWith(QLatin1String(".bin")))
            programs.append(program.chopped(4));
    }
    programs.removeAll(QString());
    return process;
}

/// How well an entry fits a process, the better the greater.
enum class Match {
    None,
    /// The entry starts the program with arguments that the process was not started with, as one
    /// that opens a program's preferences does.
    ExecutableWithOtherArguments,
    Executable,
    ExecutableWithArguments,
    EntryName,
    WindowClass,
};

/// The entry's command, from the program on: without env(1) and its assignments, without the field
/// codes of files, and without the switch that we put in.
QStringList commandOf(GAppInfo *info)
{
    int count = 0;
    char **words = nullptr;
    QStringList command;
    const char *line = g_app_info_get_commandline(info);
    if (!line || !g_shell_parse_argv(line, &count, &words, nullptr))
        return command;
    for (int i = 0; i < count; ++i) {
        const QString word = QFile::decodeName(words[i]);
        const bool isBeforeProgram =
            command.isEmpty() && (word == QLatin1String("env") || word.indexOf(u'=') > 0);
        if (!isBeforeProgram && !word.startsWith(u'%') && word != QLatin1String(accessOption))
            command.append(word);
    }
    g_strfreev(words);
    return command;
}

bool isOneOf(const QString &executable, const QStringList &programs)
{
    if (programs.contains(QFileInfo(executable).fileName()))
        return true;
    char *path = g_find_program_in_path(QFile::encodeName(executable).constData());
    const QString target = QFileInfo(QFile::decodeName(path)).canonicalFilePath();
    g_free(path);
    return programs.contains(QFileInfo(target).fileName());
}

Match match(GAppInfo *info, const Process &process, const QString &windowClass)
{
    const QString id = QString::fromUtf8(g_app_info_get_id(info));
    const QString entryName = id.chopped(id.endsWith(QLatin1String(".desktop")) ? 8 : 0);
    if (!windowClass.isEmpty()) {
        const QString wmClass =
            QString::fromUtf8(g_desktop_app_info_get_startup_wm_class(G_DESKTOP_APP_INFO(info)));
        if (wmClass == windowClass || !entryName.compare(windowClass, Qt::CaseInsensitive))
            return Match::WindowClass;
    }
    if (process.programs.contains(entryName))
        return Match::EntryName;
    const QStringList command = commandOf(info);
    if (!g_app_info_should_show(info) || command.isEmpty() ||
        !isOneOf(command.first(), process.programs))
        return Match::None;
    if (command.size() == 1)
        return Match::Executable;
    const bool started = std::ranges::all_of(command.sliced(1), [&](const QString &argument) {
        return process.arguments.contains(argument);
    });
    return started ? Match::ExecutableWithArguments : Match::ExecutableWithOtherArguments;
}

} // namespace

std::optional<ProgramEntry> entryOfProcess(std::int32_t pid, const QString &windowClass)
{
    const Process process = processOf(pid);
    std::optional<ProgramEntry> entry;
    Match best = Match::None;
    GList *all = g_app_info_get_all();
    for (GList *it = all; it; it = it->next) {
        auto *info = static_cast<GAppInfo *>(it->data);
        const Match found = match(info, process, windowClass);
        if (found > best) {
            best = found;
            entry = ProgramEntry{
                QString::fromUtf8(g_app_info_get_id(info)),
                QString::fromUtf8(g_app_info_get_name(info)),
                QFile::decodeName(g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(info)))};
        }
    }
    g_list_free_full(all, g_object_unref);
    return entry;
}

} // namespace platform::linux_
