#include "quillet/window/Fonts.h"

#include <QFontDatabase>
#include <QHash>

namespace
{

struct Face {
    QString family;
    QFont::Weight weight = QFont::Normal;
};

/// The faces by PostScript name, each with the family that its file was registered under.
QHash<QString, Face> registeredFaces()
{
    struct File {
        const char16_t *name;
        QFont::Weight weight;
    };
    static constexpr File files[] = {
        {u"Manrope-Regular", QFont::Normal},
        {u"Manrope-SemiBold", QFont::DemiBold},
        {u"Manrope-Bold", QFont::Bold},
    };
    QHash<QString, Face> faces;
    for (const File &file : files) {
        const QString name = QString::fromUtf16(file.name);
        const QString path = QStringLiteral(":/fonts/%1.ttf").arg(name);
        const QStringList families =
            QFontDatabase::applicationFontFamilies(QFontDatabase::addApplicationFont(path));
        if (families.isEmpty())
            qWarning("The font %s could not be registered.", qUtf8Printable(name));
        else
            faces.insert(name, {families.first(), file.weight});
    }
    return faces;
}

const QHash<QString, Face> &faces()
{
    static const QHash<QString, Face> registered = registeredFaces();
    return registered;
}

} // namespace

void registerFonts()
{
    faces();
}

QFont customFont(const QString &name, int pointSize)
{
    const auto face = faces().constFind(name);
    if (face == faces().constEnd())
        return systemFont(pointSize);
    QFont font(face->family);
    font.setPixelSize(pointSize);
    font.setWeight(face->weight);
    return font;
}

QFont systemFont(int pointSize, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(pointSize);
    font.setWeight(weight);
    return font;
}
