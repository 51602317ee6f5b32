// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/PopupLayout.h"

#include <algorithm>

namespace PopupLayout
{

namespace
{

constexpr qreal gap = 6;
constexpr qreal rowHeight = 70;
constexpr qreal bottomMargin = 10;
constexpr qreal fieldHeight = 34;

/// The sub-options and the result share the place above the bottom margin.
QRectF container()
{
    return {0, bottomMargin, popupSize.width(), popupSize.height() - 60};
}

} // namespace

QRectF flipped(const QRectF &rect, qreal height)
{
    return {rect.x(), height - rect.y() - rect.height(), rect.width(), rect.height()};
}

QRect inContent(const QRectF &rect)
{
    return flipped(rect, popupSize.height()).toRect();
}

// A QRectF here has its minimum y at the bottom, so top() is minY and bottom() is maxY.
QPointF origin(const QRectF &button, const QRectF &visible)
{
    const qreal width = popupSize.width();
    const qreal height = popupSize.height();
    const qreal besideY = button.y() + (button.height() - height) / 2;
    qreal x = button.x() + (button.width() - width) / 2;
    qreal y = button.y() - height - gap;

    if (y < visible.top()) {
        const qreal above = button.y() + button.height() + gap;
        const qreal right = button.x() + button.width() + gap;
        const qreal left = button.x() - width - gap;
        if (above + height <= visible.bottom()) {
            y = above;
        } else if (right + width <= visible.right()) {
            x = right;
            y = besideY;
        } else if (left >= visible.left()) {
            x = left;
            y = besideY;
        } else {
            y = std::max(y, visible.top());
        }
    }
    x = std::max(visible.left(), std::min(x, visible.right() - width));
    return {x, y};
}

QRectF toolRow()
{
    return {0, popupSize.height() - 43, popupSize.width(), 40};
}

QList<QRectF> toolButtons(const QList<qreal> &titleWidths, qreal &documentWidth)
{
    QList<QRectF> rects;
    qreal x = 10;
    for (qreal titleWidth : titleWidths) {
        const qreal width = titleWidth + 40;
        rects.append({x, 0, width, 35});
        x += width + 8;
    }
    documentWidth = x;
    return rects;
}

QRectF optionsView()
{
    return container();
}

QRectF optionsAboveField()
{
    return container().adjusted(0, fieldHeight + gap, 0, 0);
}

QRectF instructionField()
{
    return {12, bottomMargin, popupSize.width() - 24, fieldHeight};
}

qreal optionsDocumentHeight(qsizetype count)
{
    const qsizetype rows = (count + 1) / 2;
    return rowHeight * static_cast<qreal>(rows);
}

QRectF option(qsizetype index, qsizetype count, qreal width)
{
    const qreal columnWidth = (width - 36) / 2;
    const qreal gridWidth = 2 * columnWidth + 18;
    const qreal margin = (width - gridWidth) / 2;
    const qsizetype rowIndex = index / 2;
    const auto row = static_cast<qreal>(rowIndex);
    const auto column = static_cast<qreal>(index % 2);
    return {margin + 6 + column * (columnWidth + 6),
            optionsDocumentHeight(count) - (row + 1) * rowHeight, columnWidth, 60};
}

QRectF resultView()
{
    return {12, bottomMargin + 58, popupSize.width() - 24, container().height() - 24};
}

QRectF resultButton(int index)
{
    const qreal width = (popupSize.width() - 48) / 3;
    return {12 + index * (width + 12), bottomMargin + 5, width, 36};
}

} // namespace PopupLayout
