// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// Read by the thread sanitizer. The system's libraries are not built for it: what they order by
// their own locks looks unordered. The library's own queues and locks are all visible to it.
extern "C" const char *__tsan_default_suppressions()
{
    return "race:libQt6Core.so\nrace:libQt6Network.so\nrace:libglib-2.0.so\nrace:tzset_internal\n"
           "mutex:libQt6Core.so\ndeadlock:libQt6Core.so\n";
}

// The tests start processes while threads run.
extern "C" const char *__tsan_default_options()
{
    return "die_after_fork=0";
}

// The shared registry must not find the files of the user who runs the tests.
int main(int argc, char **argv)
{
    const QTemporaryDir home;
    for (const char *variable : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        qputenv(variable, home.path().toUtf8());
    qunsetenv("DO_NOT_TRACK");
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    return RUN_ALL_TESTS();
}
