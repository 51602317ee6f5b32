// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/PanelShape.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QRegion>

namespace platform::linux_
{

QList<QRect> cutOut(QImage &image)
{
    image.convertTo(QImage::Format_ARGB32);
    QRegion region;
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        int start = -1;
        for (int x = 0; x <= image.width(); ++x) {
            const bool opaque = x < image.width() && qAlpha(line[x]) >= 128;
            if (opaque && start < 0)
                start = x;
            if (!opaque && start >= 0) {
                region += QRect(start, y, x - start, 1);
                start = -1;
            }
            if (x < image.width())
                line[x] = opaque ? line[x] | 0xff000000u : 0;
        }
    }
    return {region.begin(), region.end()};
}

void PanelShape::draw(QPainter *painter)
{
    QPoint offset;
    const QPixmap source = sourcePixmap(Qt::LogicalCoordinates, &offset, NoPad);
    QImage image = source.toImage();
    QList<QRect> pixels = cutOut(image);
    const qreal scale = source.devicePixelRatio();
    const QPoint deviceOffset = (QPointF(offset) * scale).toPoint();
    for (QRect &rect : pixels)
        rect.translate(deviceOffset);

    painter->save();
    painter->setCompositionMode(QPainter::CompositionMode_Source);
    painter->drawImage(offset, image);
    painter->restore();
    Q_EMIT painted(pixels);
}

} // namespace platform::linux_
