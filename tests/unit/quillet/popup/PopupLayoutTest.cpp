// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/PopupLayout.h"

#include <gtest/gtest.h>

#include <ostream>

void PrintTo(const QRectF &r, std::ostream *os)
{
    *os << r.x() << "," << r.y() << " " << r.width() << "x" << r.height();
}
void PrintTo(const QPointF &p, std::ostream *os)
{
    *os << p.x() << "," << p.y();
}

using namespace PopupLayout;

namespace
{

const QRectF screen(0, 0, 1440, 900);

QRectF button(qreal x, qreal y)
{
    return {x, y, 25, 25};
}

} // namespace

TEST(PopupLayout, GoesBelowTheButtonAndAboveWhereThereIsNoRoom)
{
    EXPECT_EQ(origin(button(700, 600), screen), QPointF(527.5, 344));
    EXPECT_EQ(origin(button(700, 256), screen), QPointF(527.5, 0));
    EXPECT_EQ(origin(button(700, 255), screen), QPointF(527.5, 286));
}

TEST(PopupLayout, StaysWithinTheSidesOfTheScreen)
{
    EXPECT_EQ(origin(button(1410, 600), screen).x(), 1070);
    EXPECT_EQ(origin(button(5, 600), screen).x(), 0);
    const QRectF second(1440, 0, 1000, 900);
    EXPECT_EQ(origin(button(1445, 600), second).x(), 1440);
}

TEST(PopupLayout, GoesBesideTheButtonOnALowScreen)
{
    const QRectF low(0, 0, 1440, 260);
    EXPECT_EQ(origin(button(700, 100), low), QPointF(731, -12.5)) << "to the right";
    EXPECT_EQ(origin(button(1200, 100), low), QPointF(824, -12.5)) << "to the left";
    const QRectF tiny(0, 20, 500, 260);
    EXPECT_EQ(origin(button(250, 100), tiny), QPointF(77.5, 20)) << "no room on any side";
}

TEST(PopupLayout, LaysOutTheGrid)
{
    EXPECT_EQ(optionsDocumentHeight(7), 280);
    EXPECT_EQ(optionsDocumentHeight(23), 840);
    EXPECT_EQ(optionsDocumentHeight(1), 70);
    EXPECT_EQ(option(0, 7, 370), QRectF(15, 210, 167, 60));
    EXPECT_EQ(option(1, 7, 370), QRectF(188, 210, 167, 60));
    EXPECT_EQ(option(6, 7, 370), QRectF(15, 0, 167, 60));
    EXPECT_EQ(optionsView(), QRectF(0, 10, 370, 190));
}
