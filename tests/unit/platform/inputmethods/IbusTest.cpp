// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/inputmethods/Ibus.h"

#include <gtest/gtest.h>

using namespace platform::linux_;

TEST(Ibus, FindsTheAddressOfItsBus)
{
    const QString folder = QStringLiteral("/c");
    EXPECT_EQ(ibusAddressFile(folder, "id", ":1.0"), QStringLiteral("/c/ibus/bus/id-unix-1"));
    EXPECT_EQ(ibusAddressFile(folder, "id", ":12"), QStringLiteral("/c/ibus/bus/id-unix-12"));
    EXPECT_EQ(ibusAddressFile(folder, "id", "host:0"), QStringLiteral("/c/ibus/bus/id-host-0"));
    EXPECT_EQ(ibusAddress("# comment\nIBUS_ADDRESS=unix:path=/x,guid=1\nIBUS_DAEMON_PID=2\n"),
              "unix:path=/x,guid=1");
    EXPECT_EQ(ibusAddress("NOT_IBUS_ADDRESS=unix:path=/x"), "");
}

TEST(Ibus, OnlyPlainLayoutsAreDirect)
{
    EXPECT_TRUE(isDirectIbusEngine(QStringLiteral("xkb:de::ger")));
    EXPECT_TRUE(isDirectIbusEngine(QString()));
    EXPECT_FALSE(isDirectIbusEngine(QStringLiteral("libpinyin")));
}
