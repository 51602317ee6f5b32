// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/Localisation.h"

#include <QLocale>
#include <QTranslator>

namespace
{

struct Table {
    Table()
    {
        // Only a suffix that is given lets it fall back to the table without a language.
        if (!translator.load(QLocale(), QStringLiteral("Localizable"), QStringLiteral("_"),
                             QStringLiteral(":/localisation"), QStringLiteral(".qm")))
            qWarning("The localisation table is missing from the resources.");
    }
    QTranslator translator;
};

} // namespace

QString localized(const QString &key)
{
    return localized(key.toUtf8().constData());
}

QString localized(const char *key)
{
    static const Table table;
    const QString title = table.translator.translate("Localizable", key);
    return title.isEmpty() ? QString::fromUtf8(key) : title;
}
