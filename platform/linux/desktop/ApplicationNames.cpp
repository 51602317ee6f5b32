// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/desktop/ApplicationNames.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <memory>

namespace platform::linux_
{

namespace
{

QByteArray readProcFile(std::int32_t pid, const char *name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(pid).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Process {
    QString comm;
    QByteArray startTime;
};

// proc(5): the second field of stat is the name in parentheses and may contain any character; the
// start time is the 22nd field.
std::optional<Process> readProcess(std::int32_t pid)
{
    const QByteArray stat = readProcFile(pid, "stat");
    const qsizetype open = stat.indexOf('(');
    const qsizetype close = stat.lastIndexOf(')');
    if (open < 0 || close < open)
        return {};
    const QList<QByteArray> rest = stat.mid(close + 2).split(' ');
    constexpr int startTimeField = 22 - 3;
    constexpr int stateField = 0;
    if (rest.size() <= startTimeField || rest[stateField] == "Z")
        return {};
    return Process{QString::fromUtf8(stat.mid(open + 1, close - open - 1)), rest[startTimeField]};
}

/// What a desktop entry may call the program: its file, and what it was started as, which for a
/// script is the script and not its interpreter.
QStringList programNames(std::int32_t pid)
{
    QStringList names;
    const QList<QByteArray> arguments = readProcFile(pid, "cmdline").split('\0');
    for (int i = 0; i < arguments.size() && i < 2; ++i) {
        if (i == 0 || !arguments[i].startsWith('-'))
            names.append(QFileInfo(QFile::decodeName(arguments[i])).fileName());
    }
    names.append(
        QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(pid))).fileName());
    names.removeAll(QString());
    return names;
}

enum Match { NoMatch, ByExecutable, ByEntryName, ByWindowClass };

Match match(GAppInfo *info, const QStringList &programs, const QString &windowClass)
{
    const QString id = QString::fromUtf8(g_app_info_get_id(info));
    const QString entryName = id.chopped(id.endsWith(QLatin1String(".desktop")) ? 8 : 0);
    if (!windowClass.isEmpty()) {
        const QString wmClass =
            QString::fromUtf8(g_desktop_app_info_get_startup_wm_class(G_DESKTOP_APP_INFO(info)));
        if (wmClass == windowClass || !entryName.compare(windowClass, Qt::CaseInsensitive))
            return ByWindowClass;
    }
    if (programs.contains(entryName))
        return ByEntryName;
    const QString executable =
        QFileInfo(QFile::decodeName(g_app_info_get_executable(info))).fileName();
    return programs.contains(executable) && g_app_info_should_show(info) ? ByExecutable : NoMatch;
}

QString desktopEntryName(const QStringList &programs, const QString &windowClass)
{
    QString name;
    Match best = NoMatch;
    GList *all = g_app_info_get_all();
    for (GList *it = all; it; it = it->next) {
        auto *info = static_cast<GAppInfo *>(it->data);
        const Match found = match(info, programs, windowClass);
        if (found > best) {
            best = found;
            name = QString::fromUtf8(g_app_info_get_name(info));
        }
    }
    g_list_free_full(all, g_object_unref);
    return name;
}

// Processes come and go; what is not asked for any more is forgotten now and then.
constexpr qsizetype mostKnown = 256;

} // namespace

std::optional<QString> ApplicationNames::nameOf(std::int32_t pid, const QString &windowClass)
{
    const std::optional<Process> process = readProcess(pid);
    if (!process) {
        m_known.remove(pid);
        return {};
    }
    const auto known = m_known.constFind(pid);
    if (known != m_known.cend() && known->startTime == process->startTime &&
        (windowClass.isEmpty() || known->windowClass == windowClass))
        return known->name;

    QString name = desktopEntryName(programNames(pid), windowClass);
    if (name.isEmpty())
        name = process->comm;
    if (m_known.size() >= mostKnown)
        m_known.clear();
    m_known.insert(pid, {process->startTime, windowClass, name});
    return name;
}

} // namespace platform::linux_
