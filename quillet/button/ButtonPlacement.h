// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QPointF>
#include <QRectF>

namespace ButtonPlacement
{

/// Side of the square button, and its distance from the input's edges; points.
inline constexpr double buttonSize = 25;
inline constexpr double inset = 5;

/// The origin of the button's panel for an input at `frame`: inside its top right corner. `frame`
/// has its origin at the top left of the main screen and y growing downwards; the result is the
/// panel's bottom left corner, with the origin at the bottom left of the main screen, which is
/// `screenHeight` high, and y growing upwards.
inline QPointF panelOrigin(const QRectF &frame, double screenHeight)
{
    return {frame.x() + frame.width() - buttonSize - inset,
            screenHeight - frame.y() - buttonSize - inset};
}

} // namespace ButtonPlacement
