// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/ReadBack.h"

#include <gtest/gtest.h>

using platform::linux_::ReadBack;
using namespace std::chrono_literals;

namespace
{

TEST(ReadBack, CountsFromWhatTheSelectionLeaves)
{
    ReadBack readBack(100, 40);
    ASSERT_TRUE(readBack.useful());
    readBack.observe(100, 10, 0ms);
    EXPECT_EQ(readBack.confirmed(), 0U) << "the selection is still there";
    readBack.observe(61, 10, 5ms);
    EXPECT_EQ(readBack.confirmed(), 1U);
    readBack.observe(70, 10, 10ms);
    EXPECT_EQ(readBack.confirmed(), 10U);
    readBack.observe(75, 12, 20ms);
    EXPECT_EQ(readBack.confirmed(), 12U);
    EXPECT_EQ(readBack.excess({12, 12}), 3) << "an editor that adds of its own";
    readBack.acceptExcess({12, 12});
    EXPECT_EQ(readBack.excess({12, 12}), 0);
    EXPECT_EQ(readBack.excess({9, 12}), 0) << "the input counts in UTF-16";
    readBack.observe(std::nullopt, 20, 30ms);
    EXPECT_EQ(readBack.confirmed(), 12U);
    EXPECT_EQ(readBack.stillFor(50ms), 30ms);
}

TEST(ReadBack, AnEmptyRichInputCountsALineBreakOfItsOwn)
{
    ReadBack readBack(1, 0);
    readBack.observe(1, 3, 0ms);
    EXPECT_EQ(readBack.confirmed(), 0U);
    readBack.observe(3, 3, 5ms);
    EXPECT_EQ(readBack.confirmed(), 3U);
}

TEST(ReadBack, ASelectionMayLeaveOneCharacter)
{
    ReadBack readBack(5, 4);
    readBack.observe(2, 3, 0ms);
    EXPECT_EQ(readBack.confirmed(), 1U);
}

TEST(ReadBack, GivesUpACountThatDoesNotFollow)
{
    EXPECT_FALSE(ReadBack(std::nullopt, 0).useful());
    ReadBack readBack(5, 0);
    readBack.observe(5, 1, 0ms);
    readBack.observe(5, 1500, 30000ms);
    EXPECT_TRUE(readBack.useful()) << "so many keys may keep a program busy before it reports one";
    readBack.observe(5, 10, 30000ms);
    EXPECT_FALSE(readBack.useful());

    ReadBack slow(5, 0);
    slow.observe(6, 1, 0ms);
    slow.observe(6, 2, 60000ms);
    EXPECT_TRUE(slow.useful()) << "it has followed before: the program is busy";
}

} // namespace
