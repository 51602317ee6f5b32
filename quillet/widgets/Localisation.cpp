// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/Localisation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace
{

/// The table of the user's language. Its entries have one context, and are found from any.
class Table : public QTranslator
{
public:
    Table()
    {
        // Only a suffix that is given lets it fall back to the table without a language.
        if (!load(QLocale(), QStringLiteral("Localizable"), QStringLiteral("_"),
                  QStringLiteral(":/localisation"), QStringLiteral(".qm")))
            qWarning("The localisation table is missing from the resources.");
    }

    QString translate(const char *, const char *text, const char *comment = nullptr,
                      int n = -1) const override
    {
        return QTranslator::translate("Localizable", text, comment, n);
    }
};

/// Names the key that keyboards and desktops here call Super, and the toolkit Meta.
class KeyNames : public QTranslator
{
public:
    using QTranslator::QTranslator;

    QString translate(const char *context, const char *text, const char *, int) const override
    {
        const bool isKey = qstrcmp(context, "QShortcut") == 0 && qstrcmp(text, "Meta") == 0;
        return isKey ? localized("Super") : QString();
    }
    bool isEmpty() const override { return false; }
};

Table &table()
{
    static Table table;
    return table;
}

} // namespace

QString localized(const QString &key)
{
    return localized(key.toUtf8().constData());
}

QString localized(const char *key)
{
    const QString title = table().translate(nullptr, key);
    return title.isEmpty() ? QString::fromUtf8(key) : title;
}

void installTranslations()
{
    QCoreApplication::installTranslator(&table());
    // The one that is installed last is asked first. A system without it shows English.
    auto *toolkit = new QTranslator(QCoreApplication::instance());
    if (toolkit->load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                      QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(toolkit);
    QCoreApplication::installTranslator(new KeyNames(QCoreApplication::instance()));
}
