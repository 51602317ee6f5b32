// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/ActiveWindow.h"

#include <QList>
#include <QRect>
#include <QRectF>

#include <optional>

namespace platform::linux_
{

/// A screen, for turning device pixels into points.
struct ScreenGeometry {
    /// In points. Qt leaves the origin of a scaled screen where the window system has it.
    QRect geometry;
    double scale = 1;

    QRect inPixels() const
    {
        return QRect(geometry.topLeft(), QSizeF(QSizeF(geometry.size()) * scale).toSize());
    }
};

/// Whether an application's extents can be those of something on a screen.
bool isPlausible(const QRect &pixels, const QList<ScreenGeometry> &screens);

/// Where an element lies on the screen, in the units of `window`, by what its program says of it
/// and of its top-level window, and by where the window system has that window. Some programs count
/// in units of several pixels, or of a fraction of one more. A program that counts from its window
/// counts from the corner of its surface, shadow included, when its top-level window is as large as
/// that, else from the corner of the contents; what remains is a border of the same width on
/// opposite sides.
QRect ontoScreen(const QRect &element, const QRect &topLevel, const WindowPlace &window);

/// Turns device pixels into points from the top left of the main screen, the first of `screens`.
QRectF toPoints(const QRect &pixels, const QList<ScreenGeometry> &screens);

/// The way back, for a place on one of the screens.
QRect toPixels(const QRectF &points, const QList<ScreenGeometry> &screens);

/// The screens as Qt sees them now, the main one first.
QList<ScreenGeometry> currentScreens();

} // namespace platform::linux_
