// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/Resources.h"

#include <QDir>
#include <QFile>

static void registerResources()
{
    Q_INIT_RESOURCE(quillet_offline);
}

namespace offline
{

namespace
{

QString pathOf(QStringView name)
{
    static const bool registered = (registerResources(), true);
    Q_UNUSED(registered);
    return QStringLiteral(":/quillet/offline/") + name.toString();
}

} // namespace

QByteArray resource(QStringView name)
{
    QFile file(pathOf(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("a table of the offline engine is missing");
    return file.readAll();
}

QList<QList<QString>> resourceTable(QStringView name)
{
    QList<QList<QString>> rows;
    const QString text = QString::fromUtf8(resource(name));
    for (const QString &line : text.split(u'\n')) {
        if (!line.isEmpty() && !line.startsWith(u'#'))
            rows.append(line.split(u'\t'));
    }
    return rows;
}

QStringList resourceNames(QStringView folder)
{
    return QDir(pathOf(folder)).entryList(QDir::Files, QDir::Name);
}

} // namespace offline
