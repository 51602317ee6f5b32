// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/process/ParentLink.h"
#include "process/ProcessGuard.h"

#include <cstring>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

/// Makes standard input of this process a pipe that `bytes` came through and that has ended.
void feedStandardInput(const char *bytes)
{
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    ASSERT_GE(::write(ends[1], bytes, std::strlen(bytes)), 0);
    ::close(ends[1]);
    ::dup2(ends[0], STDIN_FILENO);
}

[[noreturn]] void workWithoutEnd()
{
    constexpr unsigned longest = 60; // seconds
    ::alarm(longest);
    for (volatile int i = 0;;)
        i = i + 1;
}

TEST(ParentLinkDeathTest, EndsTheProcessWhateverItIsDoing)
{
    EXPECT_EXIT(
        {
            feedStandardInput("more\n");
            ParentLink::endProcessWithParent();
            workWithoutEnd();
        },
        testing::ExitedWithCode(0), "");
}

TEST(ParentLinkDeathTest, TakesOneLineForTheSecret)
{
    for (const auto &[input, expected] :
         {std::pair("secret\nmore", "secret"), std::pair("\n", ""), std::pair("no line", "")}) {
        EXPECT_EXIT(
            {
                feedStandardInput(input);
                std::_Exit(ParentLink::readSecret().value_or("") == expected ? 0 : 1);
            },
            testing::ExitedWithCode(0), "")
            << input;
    }
}

#ifndef QUILLET_SANITIZED
TEST(ProcessGuardDeathTest, KeepsTheMemoryToTheProcess)
{
    EXPECT_EXIT(
        {
            guardProcessMemory();
            rlimit core{};
            ::getrlimit(RLIMIT_CORE, &core);
            std::_Exit(::prctl(PR_GET_DUMPABLE) == 0 && core.rlim_max == 0 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
#endif

} // namespace
