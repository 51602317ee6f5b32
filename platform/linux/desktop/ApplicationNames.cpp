// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/desktop/ApplicationNames.h"

#include "platform/linux/desktop/ProgramEntry.h"

#include <QFile>
#include <QList>

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

// Processes come and go; what is not asked for any more is forgotten now and then.
constexpr qsizetype maxKnown = 256;

} // namespace

std::optional<RunningApplication> ApplicationNames::application(std::int32_t pid,
                                                                const QString &windowClass)
{
    const std::optional<QString> name = nameOf(pid, windowClass);
    if (!name)
        return {};
    RunningApplication application;
    application.processIdentifier = pid;
    if (!name->isEmpty())
        application.localizedName = name;
    return application;
}

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

    const std::optional<ProgramEntry> entry = entryOfProcess(pid, windowClass);
    QString name = entry && !entry->name.isEmpty() ? entry->name : process->comm;
    if (m_known.size() >= maxKnown)
        m_known.clear();
    m_known.insert(pid, {process->startTime, windowClass, name});
    return name;
}

} // namespace platform::linux_
