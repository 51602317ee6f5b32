// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QFont>
#include <QString>

/// The font with this PostScript name, `pointSize` points high (one point is one device-independent
/// pixel). The first call for a name registers the font file that the program carries; a name that
/// is not among them gives the system font of that size. Main thread, after the QGuiApplication
/// exists.
QFont customFont(const QString &name, int pointSize);

/// The desktop's own font, `pointSize` points high. Main thread.
QFont systemFont(int pointSize, QFont::Weight weight = QFont::Normal);

/// The size of text that asks for no font, in points.
inline constexpr int kBodyPointSize = 13;
