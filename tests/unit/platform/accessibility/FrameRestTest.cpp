// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/focus/FrameRest.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

using platform::linux_::FrameRest;
using Kind = FrameRest::Reading::Kind;

namespace
{

class Following : public testing::Test
{
protected:
    Following()
    {
        rest.start(
            [this] {
                ++looks;
                if (!script.isEmpty())
                    place = script.takeFirst();
                return place;
            },
            [this](const std::optional<QRectF> &frame) {
                told.append(frame ? int(frame->x()) : -1);
            });
    }

    static FrameRest::Reading at(int x) { return {Kind::At, QRectF(x, 0, 10, 10)}; }
    bool waitForTold(const QList<int> &wanted)
    {
        return waitUntil([&] { return told.size() >= wanted.size(); }) && told == wanted;
    }

    FrameRest rest;
    FrameRest::Reading place = at(1);
    /// What the next looks see.
    QList<FrameRest::Reading> script;
    /// Left edges; -1 for nothing.
    QList<int> told;
    int looks = 0;
};

TEST_F(Following, WhatMovesIsOutOfSightUntilItRests)
{
    EXPECT_TRUE(waitForTold({1}));
    // Its program reports the former place for a moment, and then each place on the way.
    script = {at(1), at(2), at(2), at(3), at(4)};
    rest.leave();
    EXPECT_EQ(told, (QList<int>{1, -1})) << "at once";
    EXPECT_TRUE(waitForTold({1, -1, 4}));

    script = {at(5)};
    rest.look();
    EXPECT_TRUE(waitForTold({1, -1, 4, -1, 5}));

    script = {{Kind::OutOfSight}};
    place = {Kind::OutOfSight};
    rest.look();
    EXPECT_TRUE(waitForTold({1, -1, 4, -1, 5, -1}));
    place = at(5);
    rest.look();
    EXPECT_TRUE(waitForTold({1, -1, 4, -1, 5, -1, 5}));
}

TEST_F(Following, AtRestItIsNotLookedAt)
{
    EXPECT_TRUE(waitForTold({1}));
    rest.look();
    const int former = looks;
    EXPECT_TRUE(waitUntil([&] { return looks >= former + 3; }));
    const int atRest = looks;
    QThread::msleep(200);
    QCoreApplication::processEvents();
    EXPECT_EQ(looks, atRest);
    EXPECT_EQ(told, QList<int>{1});
}

TEST_F(Following, WhatIsUnknownIsAskedAgain)
{
    script = {{}, {}, at(1)};
    EXPECT_TRUE(waitForTold({1})) << "a program that is busy at first";
}

} // namespace
