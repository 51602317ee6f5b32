// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QColor>
#include <QString>

class QPalette;
class QTextCharFormat;
class QTextDocument;
class QRect;
class QWidget;

/// The colours, formats and styles that the popup's parts share. Main thread.
namespace PopupStyle
{

inline constexpr QColor accentPurple(108, 61, 245);
inline constexpr QColor accentBorder(172, 144, 255);

/// Size of the answer's letters, in points.
inline constexpr int resultTextSize = 15;

/// A thin scroll bar that fits beside the grid's columns. Its handle has a contrast of at least 3
/// to the background of `palette`, light or dark.
QString thinScrollBar(const QPalette &palette);

/// The accent on the text's background, and the colour of a failure: lines and frames that reach a
/// contrast of 3 there.
QColor accentOn(const QPalette &palette);
QColor failureColor(const QPalette &palette);

/// How a word looks that has been added or changed: by its colour, and by a line below it.
QTextCharFormat changeFormat(const QPalette &palette);

/// The colour of words that go, with a contrast of at least 4.5 to the text's background.
QColor goneColor(const QPalette &palette);

/// Places a part of the panel that is as wide as the panel, and leaves the panel's outline in
/// sight.
void placeBetweenOutlines(QWidget *part, const QRect &rect);

/// Lets each paragraph run, and be aligned, in the direction of its own first letter.
void alignByParagraph(QTextDocument &document);

} // namespace PopupStyle
