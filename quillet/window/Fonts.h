#pragma once

#include <QFont>
#include <QString>

/// Makes the font files that the program carries known to the font database. Call it at start,
/// after the QGuiApplication exists; further calls do nothing. Main thread.
void registerFonts();

/// The font with this PostScript name, `pointSize` points high (one point is one device-independent
/// pixel). A name that is not among the program's fonts gives the system font of that size.
/// Main thread.
QFont customFont(const QString &name, int pointSize);

/// The desktop's own font, `pointSize` points high. Main thread.
QFont systemFont(int pointSize, QFont::Weight weight = QFont::Normal);

/// The size of text that asks for no font, in points.
inline constexpr int kBodyPointSize = 13;
