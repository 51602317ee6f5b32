#include "platform/linux/accessibility/Geometry.h"

#include <QGuiApplication>
#include <QScreen>

#include <cmath>

namespace platform::linux_
{

namespace
{

/// No screen, however large, holds more; some toolkits answer with the limits of their integers.
constexpr int largestExtent = 65535;

} // namespace

bool isPlausible(const QRect &pixels, const QList<ScreenGeometry> &screens)
{
    if (pixels.width() <= 0 || pixels.height() <= 0 || std::abs(pixels.x()) > largestExtent ||
        std::abs(pixels.y()) > largestExtent || pixels.width() > largestExtent ||
        pixels.height() > largestExtent)
        return false;
    for (const ScreenGeometry &screen : screens) {
        if (screen.inPixels().intersects(pixels))
            return true;
    }
    return screens.isEmpty();
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
