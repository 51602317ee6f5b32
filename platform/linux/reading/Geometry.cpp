// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/Geometry.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace platform::linux_
{

namespace
{

/// No screen, however large, holds more; some toolkits answer with the limits of their integers.
constexpr int largestExtent = 65535;
/// Pixels on a side of what an application counts in.
constexpr int largestUnit = 4;

} // namespace

bool isPlausible(const QRect &pixels, const QList<ScreenGeometry> &screens)
{
    const auto isPlace = [](int place) {
        return place >= -largestExtent && place <= largestExtent;
    };
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
    const int unit =
        std::clamp(qRound(double(window.contents.width()) / topLevel.width()), 1, largestUnit);
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
    return QRectF(place - QPointF(screens.first().geometry.topLeft()),
                  QSizeF(pixels.size()) / on->scale);
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
