// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/Resources.h"

#include <QFile>

static void registerResources()
{
    Q_INIT_RESOURCE(quillet_offline);
}

namespace offline
{

QByteArray resource(QStringView name)
{
    static const bool registered = (registerResources(), true);
    Q_UNUSED(registered);
    QFile file(QStringLiteral(":/quillet/offline/") + name.toString());
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

} // namespace offline
