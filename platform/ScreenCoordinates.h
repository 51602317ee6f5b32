// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QGuiApplication>
#include <QRectF>
#include <QScreen>

namespace platform
{

/// The one conversion between the coordinate systems of the desktop, all in points:
///  - accessibility: origin at the top left of the main screen, y downwards;
///  - bottom-left: origin at the bottom left of the main screen, y upwards; a rectangle's y is that
///    of its lower edge;
///  - toolkit: Qt's, y downwards; the main screen lies anywhere in it.
struct ScreenCoordinates {
    /// In toolkit coordinates; empty where there is no screen.
    QRectF mainScreen;

    static ScreenCoordinates current()
    {
        const QScreen *const main = QGuiApplication::primaryScreen();
        return {main ? QRectF(main->geometry()) : QRectF()};
    }

    QRectF accessibilityFromToolkit(const QRectF &rect) const
    {
        return rect.translated(-mainScreen.topLeft());
    }
    QRectF bottomLeftFromToolkit(const QRectF &rect) const
    {
        return {rect.x() - mainScreen.x(), mainScreen.bottom() - rect.bottom(), rect.width(),
                rect.height()};
    }
    QRectF toolkitFromBottomLeft(const QRectF &rect) const
    {
        return {rect.x() + mainScreen.x(), mainScreen.bottom() - rect.y() - rect.height(),
                rect.width(), rect.height()};
    }
};

} // namespace platform
