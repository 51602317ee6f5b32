// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "SystemInfo.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using metricpost::SystemInfo;

TEST(SystemInfoTest, ReadsWhatTheSystemSaysAndIsHonestAboutTheRest)
{
    const QTemporaryDir root;
    const auto put = [&](const QString &path, const QByteArray &text) {
        const QString full = root.path() + path;
        QDir().mkpath(QFileInfo(full).path());
        QFile file(full);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    };
    const SystemInfo empty = SystemInfo::read(root.path());
    for (const QString &fact : {empty.os, empty.osVersion, empty.manufacturer, empty.model})
        EXPECT_EQ(fact, QStringLiteral("Unknown"));
    EXPECT_FALSE(empty.deviceIdentifier);

    put(QStringLiteral("/proc/sys/kernel/ostype"), "Linux\n");
    put(QStringLiteral("/proc/sys/kernel/osrelease"), "6.1.0\n");
    put(QStringLiteral("/proc/device-tree/model"), QByteArray("Board 4\0", 8));
    EXPECT_EQ(SystemInfo::read(root.path()).osVersion, QStringLiteral("6.1.0"));
    EXPECT_EQ(SystemInfo::read(root.path()).model, QStringLiteral("Board 4"));

    put(QStringLiteral("/etc/os-release"),
        "NAME=\"Debian\"\nPRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n");
    put(QStringLiteral("/sys/class/dmi/id/sys_vendor"), "LENOVO\n");
    put(QStringLiteral("/sys/class/dmi/id/product_name"), "21CB\n");
    put(QStringLiteral("/etc/machine-id"), "0123456789abcdef0123456789abcdef\n");
    const SystemInfo info = SystemInfo::read(root.path());
    EXPECT_EQ(info.os, QStringLiteral("Linux"));
    EXPECT_EQ(info.osVersion, QStringLiteral("Debian GNU/Linux 12 (bookworm)"));
    EXPECT_EQ(info.manufacturer, QStringLiteral("LENOVO"));
    EXPECT_EQ(info.model, QStringLiteral("21CB"));
    ASSERT_TRUE(info.deviceIdentifier);
    EXPECT_EQ(info.deviceIdentifier->size(), 32);
    EXPECT_FALSE(info.deviceIdentifier->contains(QStringLiteral("0123456789abcdef")));
    EXPECT_EQ(SystemInfo::read(root.path()).deviceIdentifier, info.deviceIdentifier);
}
