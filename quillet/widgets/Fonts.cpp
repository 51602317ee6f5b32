// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/Fonts.h"

#include <QFontDatabase>
#include <QHash>
#include <QResource>

#include <optional>

namespace
{

/// The weight of a face that the program carries, by PostScript name.
std::optional<QFont::Weight> weightOf(const QString &name)
{
    if (name == QLatin1StringView("Manrope-Regular"))
        return QFont::Normal;
    if (name == QLatin1StringView("Manrope-SemiBold"))
        return QFont::DemiBold;
    if (name == QLatin1StringView("Manrope-Bold"))
        return QFont::Bold;
    return std::nullopt;
}

/// Registers a face that the program carries and gives its family; empty when that fails.
QString registerFace(const QString &name)
{
    // Stored without compression: the font database uses the file where it lies in the program.
    const QByteArray file =
        QResource(QStringLiteral(":/fonts/%1.ttf").arg(name)).uncompressedData();
    const QStringList families =
        QFontDatabase::applicationFontFamilies(QFontDatabase::addApplicationFontFromData(file));
    if (families.isEmpty())
        qWarning("The font %s could not be registered.", qUtf8Printable(name));
    return families.value(0);
}

QString familyOf(const QString &name)
{
    static QHash<QString, QString> families;
    const auto known = families.constFind(name);
    return known != families.constEnd() ? *known : *families.insert(name, registerFace(name));
}

} // namespace

QFont customFont(const QString &name, int pointSize)
{
    const auto weight = weightOf(name);
    const QString family = weight ? familyOf(name) : QString();
    if (family.isEmpty())
        return systemFont(pointSize);
    QFont font(family);
    font.setPixelSize(pointSize);
    font.setWeight(*weight);
    return font;
}

QFont systemFont(int pointSize, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(pointSize);
    font.setWeight(weight);
    return font;
}
