// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QRect>
#include <QRectF>
#include <QSizeF>

/// Where things are in the popup. Everything is in points with the origin at the bottom left and y
/// growing upwards: on the screen for the popup itself, in the popup's content for its parts, in
/// the scrolled document for the options. flipped() turns that into a widget's coordinates.
namespace PopupLayout
{

inline constexpr QSizeF popupSize(370, 250);

/// `rect` of a container `height` high, with the origin at the container's top left instead.
QRectF flipped(const QRectF &rect, qreal height);

/// `rect` of the popup's content as a widget's geometry.
QRect inContent(const QRectF &rect);

/// The popup's origin for a button at `button` on a screen whose usable area is `visible`: below
/// the button, else above it, else beside it, and never past the sides of the screen.
QPointF origin(const QRectF &button, const QRectF &visible);

QRectF toolRow();

/// The tools' buttons in the row's document, from their titles' widths; `documentWidth` is set to
/// the width that they need.
QList<QRectF> toolButtons(const QList<qreal> &titleWidths, qreal &documentWidth);

QRectF optionsView();
/// The options and, below them, the field for an instruction.
QRectF optionsAboveField();
QRectF instructionField();
/// Height of the document that holds `count` options.
qreal optionsDocumentHeight(qsizetype count);
/// The option at `index` of `count` in a document `width` wide.
QRectF option(qsizetype index, qsizetype count, qreal width);

QRectF resultView();
/// The three buttons below the result, from the left.
QRectF resultButton(int index);

} // namespace PopupLayout
