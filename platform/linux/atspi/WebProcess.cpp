// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/atspi/WebProcess.h"

#include <QByteArray>
#include <QFile>

#include <optional>

namespace platform::linux_
{

namespace
{

/// The kernel keeps 15 characters of a name.
constexpr char webProcess[] = "WebKitWebProces";
/// What it runs in, and what passes its messages on.
constexpr char sandbox[] = "bwrap";
constexpr char proxy[] = "xdg-dbus-proxy";
constexpr int maxDepth = 8;

struct Process {
    QByteArray name;
    std::int32_t parent = 0;
};

std::optional<Process> processOf(std::int32_t pid)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!file.open(QFile::ReadOnly))
        return {};
    // "PID (NAME) STATE PARENT …" (proc(5)); the name may hold anything, brackets too.
    const QByteArray line = file.readAll();
    const qsizetype open = line.indexOf('(');
    const qsizetype close = line.lastIndexOf(')');
    if (open < 0 || close < open)
        return {};
    return Process{line.mid(open + 1, close - open - 1),
                   line.mid(close + 2).split(' ').value(1).toInt()};
}

} // namespace

std::int32_t processWithWindow(std::int32_t pid)
{
    std::int32_t candidate = pid;
    for (int depth = 0; depth < maxDepth; ++depth) {
        const auto process = processOf(candidate);
        if (!process || process->parent <= 1)
            return pid;
        const bool isEngine = process->name == webProcess || process->name == proxy;
        if (!isEngine && (depth == 0 || process->name != sandbox))
            return candidate;
        candidate = process->parent;
    }
    return pid;
}

} // namespace platform::linux_
