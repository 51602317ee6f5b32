// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "commands/OwnCommands.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace
{

constexpr qsizetype maxCommands = 100;
constexpr qsizetype maxValueLength = 4'000;
constexpr qsizetype maxIdentifierLength = 60;
constexpr qint64 maxFileSize = 1024 * 1024;
constexpr QStringView prefix = u"own-";

bool isIdentifierCharacter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') || c == u'-';
}

QString *valueOf(OwnCommand &command, QStringView key)
{
    if (key == u"name")
        return &command.name;
    if (key == u"instruction")
        return &command.instruction;
    if (key == u"model")
        return &command.model;
    return key == u"key" ? &command.key : nullptr;
}

/// `value` on lines that parsed() puts together again.
QString line(QStringView key, const QString &value)
{
    QStringList lines;
    for (const QString &each : value.split(u'\n')) {
        if (!each.trimmed().isEmpty())
            lines += each.trimmed();
    }
    return lines.isEmpty() ? QString()
                           : key.toString() + QStringLiteral(" = ") +
                                 lines.join(QStringLiteral("\n  ")) + u'\n';
}

QByteArray contentOf(const QList<OwnCommand> &commands)
{
    QString text = QStringLiteral("# The commands that you have made. You can edit this file, copy "
                                  "it and give it away.\n");
    for (const OwnCommand &command : commands) {
        text += QStringLiteral("\n[%1]\n").arg(command.identifier);
        text += line(u"name", command.name.simplified());
        text += line(u"instruction", command.instruction);
        text += line(u"model", command.model.simplified());
        text += line(u"key", command.key.simplified());
    }
    return text.toUtf8();
}

/// Copies a file that holds more than its commands. False: that is needed and failed.
bool keepOriginal(const QString &path)
{
    if (!QFileInfo::exists(path))
        return true;
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() > maxFileSize || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray content = file.readAll();
    if (content == contentOf(OwnCommands::parsed(QString::fromUtf8(content))))
        return true;
    QSaveFile copy(path + u'~');
    return copy.open(QIODevice::WriteOnly) && copy.write(content) == content.size() &&
           copy.commit();
}

} // namespace

QString OwnCommands::defaultPath()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
        .filePath(QStringLiteral("quillet/commands.ini"));
}

bool OwnCommands::isOwn(QStringView command)
{
    return command.startsWith(prefix) && command.size() > prefix.size() &&
           command.size() <= maxIdentifierLength &&
           std::all_of(command.begin(), command.end(), isIdentifierCharacter);
}

QList<OwnCommand> OwnCommands::parsed(const QString &text)
{
    QList<OwnCommand> commands;
    QStringList identifiers;
    OwnCommand current;
    QString *value = nullptr;
    const auto conclude = [&] {
        const bool isComplete = isOwn(current.identifier) && current.identifier != once &&
                                !current.name.isEmpty() && !current.instruction.isEmpty();
        if (isComplete && commands.size() < maxCommands &&
            !identifiers.contains(current.identifier)) {
            identifiers += current.identifier;
            commands += current;
        }
        current = {};
        value = nullptr;
    };
    for (const QString &raw : text.split(u'\n')) {
        const QString line = raw.trimmed();
        if (line.isEmpty() || (!raw[0].isSpace() && (line[0] == u'#' || line[0] == u';')))
            continue;
        if (raw[0].isSpace()) {
            if (value)
                *value = (*value + u'\n' + line).left(maxValueLength);
        } else if (line.startsWith(u'[') && line.endsWith(u']')) {
            conclude();
            current.identifier = line.sliced(1, line.size() - 2);
        } else {
            const qsizetype equals = line.indexOf(u'=');
            value =
                equals < 0 ? nullptr : valueOf(current, QStringView(line).left(equals).trimmed());
            if (value)
                *value = line.sliced(equals + 1).trimmed().left(maxValueLength);
        }
    }
    conclude();
    return commands;
}

QList<OwnCommand> OwnCommands::read(const QString &path)
{
    QFile file(path);
    // Anything but a file, such as a pipe, could keep the reader waiting.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return parsed(QString::fromUtf8(file.read(maxFileSize)));
}

bool OwnCommands::write(const QString &path, const QList<OwnCommand> &commands)
{
    if (!keepOriginal(path))
        return false;
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(contentOf(commands));
    return file.commit();
}

QString OwnCommands::newIdentifier(const QString &name, const QStringList &taken)
{
    QString words;
    // Accents are apart from their letters, and fall away.
    for (const QChar c : name.normalized(QString::NormalizationForm_KD).toLower()) {
        if (isIdentifierCharacter(c) && c != u'-')
            words += c;
        else if (!c.isMark() && !words.isEmpty() && !words.endsWith(u'-'))
            words += u'-';
    }
    words = words.left(40);
    while (words.endsWith(u'-'))
        words.chop(1);
    const QString base = prefix.toString() + (words.isEmpty() ? QStringLiteral("command") : words);
    QString identifier = base;
    for (int number = 2; taken.contains(identifier) || identifier == once; ++number)
        identifier = base + u'-' + QString::number(number);
    return identifier;
}
