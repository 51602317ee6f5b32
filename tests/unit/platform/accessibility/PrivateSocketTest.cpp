// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/atspi/PrivateSocket.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace platform::linux_;

namespace
{

TEST(PrivateSocket, TakesOneUnixSocketAndNothingElse)
{
    EXPECT_EQ(parsePrivateAddress("unix:path=/run/user/0/at-spi/1,guid=0123abcd"),
              (PrivateSocket{"/run/user/0/at-spi/1", false}));
    EXPECT_EQ(parsePrivateAddress("unix:guid=01,abstract=/tmp/dbus%2ba"),
              (PrivateSocket{"/tmp/dbus+a", true}));

    for (const char *refused : {"",
                                "unix:",
                                "unix:guid=01",
                                "unix:path=",
                                "unix:path=relative",
                                "unix:path",
                                "unixexec:path=/bin/sh,argv1=-c,argv2=id",
                                "tcp:host=127.0.0.1,port=22",
                                "x-machine-unix:machine=host",
                                "autolaunch:",
                                "unix:path=/a;unixexec:path=/bin/sh",
                                "unixexec:path=/bin/sh;unix:path=/a",
                                "unix:path=/a,path=/b",
                                "unix:path=/a,abstract=b",
                                "unix:path=/a,guid=1,guid=2",
                                "unix:path=/a%00b",
                                "unix:tmpdir=/tmp",
                                "unix:runtime=yes",
                                "unix:path=/a,uid=0",
                                " unix:path=/a",
                                "UNIX:path=/a"})
        EXPECT_FALSE(parsePrivateAddress(refused)) << refused;
}

TEST(PrivateSocket, BelongsToTheProcessThatTheBusNames)
{
    const QTemporaryDir folder;
    const QByteArray path = folder.filePath(QStringLiteral("socket")).toLocal8Bit();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listener, 8), 0);

    const PrivateSocket ours{path, false};
    const int connected = connectToProcess(ours, getpid(), getuid());
    EXPECT_GE(connected, 0);
    close(connected);
    EXPECT_LT(connectToProcess(ours, getppid(), getuid()), 0);
    EXPECT_LT(connectToProcess(ours, getpid(), getuid() + 1), 0);
    EXPECT_LT(connectToProcess({path + "-gone", false}, getpid(), getuid()), 0);
    EXPECT_LT(connectToProcess({QByteArray(200, 'a'), true}, getpid(), getuid()), 0);
    close(listener);
}

} // namespace
