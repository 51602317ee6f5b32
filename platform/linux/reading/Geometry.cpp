// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/Geometry.h"

#include "platform/ScreenCoordinates.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace platform::linux_
{

namespace
{

/// No screen, however large, holds more; some toolkits answer with the limits of their integers.
constexpr int maxExtent = 65535;
/// Pixels on a side of the unit that a program counts in.
constexpr int maxUnit = 4;
/// What is smaller is a difference of a few pixels between two ideas of a window's size.
constexpr double minScale = 1.1;

} // namespace

bool isPlausible(const QRect &pixels, const QList<ScreenGeometry> &screens)
{
    const auto isPlace = [](int place) { return place >= -maxExtent && place <= maxExtent; };
    if (pixels.width() <= 0 || pixels.height() <= 0 || !isPlace(pixels.x()) ||
        !isPlace(pixels.y()) || !isPlace(pixels.width()) || !isPlace(pixels.height()))
        return false;
    for (const ScreenGeometry &screen : screens) {
        if (screen.inPixels().intersects(pixels))
            return true;
    }
    return screens.isEmpty();
}

QRect ontoScreen(const QRect &element, const QRect &topLevel, const WindowPlace &window)
{
    if (topLevel.isEmpty() || window.contents.isEmpty())
        return element;
    // A fraction is believed where width and height agree on it; else the sizes differ by a border.
    const double ratio = double(window.contents.width()) / topLevel.width();
    const bool isScaled = ratio > minScale && ratio <= maxUnit &&
                          std::abs(topLevel.height() * ratio - window.contents.height()) <= ratio;
    if (isScaled) {
        // The program's own origin of a scaled screen is unknown: count from the window.
        const QPointF offset = element.topLeft() - topLevel.topLeft();
        return {window.contents.topLeft() + (offset * ratio).toPoint(),
                (QSizeF(element.size()) * ratio).toSize()};
    }
    const int unit = std::clamp(qRound(ratio), 1, maxUnit);
    const QRect scaled(element.topLeft() * unit, element.size() * unit);
    if (!window.countsFromWindow)
        return scaled;
    const QSize size = topLevel.size() * unit;
    const QRect &around = size == window.surface.size() ? window.surface : window.contents;
    const QSize border = (around.size() - size) / 2;
    return scaled.translated(around.topLeft() - topLevel.topLeft() * unit +
                             QPoint(border.width(), border.height()));
}

QRectF toPoints(const QRect &pixels, const QList<ScreenGeometry> &screens)
{
    if (screens.isEmpty())
        return QRectF(pixels);
    const ScreenGeometry *on = &screens.first();
    qint64 most = 0;
    for (const ScreenGeometry &screen : screens) {
        const QRect common = screen.inPixels().intersected(pixels);
        const qint64 area = qint64(common.width()) * common.height();
        if (area > most) {
            most = area;
            on = &screen;
        }
    }
    const QPointF origin = on->geometry.topLeft();
    const QPointF place = (QPointF(pixels.topLeft()) - origin) / on->scale + origin;
    return ScreenCoordinates{QRectF(screens.first().geometry)}.accessibilityFromToolkit(
        QRectF(place, QSizeF(pixels.size()) / on->scale));
}

QRect toPixels(const QRectF &points, const QList<ScreenGeometry> &screens)
{
    if (screens.isEmpty())
        return points.toRect();
    const QRectF place = points.translated(screens.first().geometry.topLeft());
    const ScreenGeometry *on = &screens.first();
    for (const ScreenGeometry &screen : screens) {
        if (QRectF(screen.geometry).contains(place.center()))
            on = &screen;
    }
    const QPointF origin = on->geometry.topLeft();
    return QRectF((place.topLeft() - origin) * on->scale + origin, place.size() * on->scale)
        .toRect();
}

QList<ScreenGeometry> currentScreens()
{
    QList<ScreenGeometry> screens;
    const QScreen *const main = QGuiApplication::primaryScreen();
    for (const QScreen *screen : QGuiApplication::screens()) {
        const ScreenGeometry geometry{screen->geometry(), screen->devicePixelRatio()};
        if (screen == main)
            screens.prepend(geometry);
        else
            screens.append(geometry);
    }
    return screens;
}

} // namespace platform::linux_
