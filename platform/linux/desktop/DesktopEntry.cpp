// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/desktop/DesktopEntry.h"

#include <QFile>
#include <QList>

namespace platform::linux_
{

namespace
{

// "The Exec key": an argument in double quotes has ", `, $ and \ escaped, a literal % is doubled,
// and as a string value its backslashes are escaped once more.
QByteArray quotedForExec(const QString &path)
{
    QByteArray quoted;
    for (const char c : QFile::encodeName(path)) {
        if (c == '"' || c == '`' || c == '$')
            quoted += "\\\\";
        if (c == '\\')
            quoted += "\\\\\\";
        if (c == '%')
            quoted += '%';
        quoted += c;
    }
    return '"' + quoted + '"';
}

QByteArray escapedString(const QString &text)
{
    return text.toUtf8().replace('\\', "\\\\");
}

} // namespace

QByteArray desktopEntryFor(const QByteArray &bundledEntry, const QString &bundle)
{
    const QString program = bundle + QStringLiteral("/bin/quillet");
    const QString icon =
        bundle + QStringLiteral("/share/icons/hicolor/scalable/apps/" QUILLET_APP_ID ".svg");
    QList<QByteArray> lines = bundledEntry.split('\n');
    for (QByteArray &line : lines) {
        if (line.startsWith("Exec=quillet")) // whatever its arguments
            line = "Exec=" + quotedForExec(program) + line.sliced(qstrlen("Exec=quillet"));
        else if (line.startsWith("TryExec="))
            line = "TryExec=" + escapedString(program);
        else if (line.startsWith("Icon="))
            line = "Icon=" + escapedString(icon);
    }
    return lines.join('\n');
}

QByteArray loginEntryFor(const QString &program)
{
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Quillet\n"
           "Comment=Quillet in the background, as you have chosen in its settings\n"
           "Icon=quillet\n"
           "Exec=" +
           quotedForExec(program) + " --background\n";
}

} // namespace platform::linux_
