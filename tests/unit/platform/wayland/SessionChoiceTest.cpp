// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/SessionChoice.h"

#include <gtest/gtest.h>

using platform::linux_::SessionChoice;

TEST(SessionChoice, WaylandOnlyWhereItOffersEverything)
{
    const auto of = [](bool wayland, bool layers, bool source, bool x11) {
        return SessionChoice::of({wayland, layers, source, x11});
    };
    EXPECT_TRUE(of(true, true, true, true).usesWayland);
    EXPECT_TRUE(of(true, true, true, false).limitation.isEmpty());
    EXPECT_FALSE(of(false, false, false, true).usesWayland);
    EXPECT_TRUE(of(false, false, false, true).limitation.isEmpty());

    for (const auto &[layers, source] : {std::pair(true, false), {false, true}, {false, false}}) {
        const auto withX11 = of(true, layers, source, true);
        EXPECT_FALSE(withX11.usesWayland) << "on the X11 server at least its programs work";
        EXPECT_FALSE(withX11.limitation.isEmpty()) << "and the user is told of the others";
        const auto without = of(true, layers, source, false);
        EXPECT_TRUE(without.usesWayland);
        EXPECT_FALSE(without.limitation.isEmpty());
        EXPECT_NE(without.limitation, withX11.limitation);
    }
}
