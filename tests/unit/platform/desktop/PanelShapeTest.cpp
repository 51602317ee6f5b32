// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/PanelShape.h"

#include <QImage>
#include <QRegion>

#include <gtest/gtest.h>

TEST(PanelShape, KeepsWhatIsMoreOpaqueThanClearInItsOwnColour)
{
    QImage image(3, 2, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setPixelColor(0, 0, QColor(200, 100, 50, 255));
    image.setPixelColor(1, 0, QColor(200, 100, 50, 242));
    image.setPixelColor(2, 0, QColor(200, 100, 50, 100));
    image.setPixelColor(2, 1, QColor(200, 100, 50, 128));

    QRegion region;
    for (const QRect &rect : platform::linux_::cutOut(image))
        region += rect;

    EXPECT_EQ(region, QRegion(0, 0, 2, 1) + QRegion(2, 1, 1, 1));
    EXPECT_EQ(image.pixel(2, 0), 0u);
    // Not darkened by what was clear in it; un-premultiplying rounds.
    const QColor edge = image.pixelColor(2, 1);
    EXPECT_EQ(edge.alpha(), 255);
    EXPECT_NEAR(edge.red(), 200, 1);
    EXPECT_NEAR(edge.blue(), 50, 1);
}
