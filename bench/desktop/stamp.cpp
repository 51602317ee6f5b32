// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Copies standard input to standard output, each line after the monotonic time in nanoseconds at
// which it came.

#include <cstdio>
#include <ctime>
#include <iostream>
#include <string>

int main()
{
    for (std::string line; std::getline(std::cin, line);) {
        timespec time;
        clock_gettime(CLOCK_MONOTONIC, &time);
        std::printf("%lld %s\n", time.tv_sec * 1'000'000'000LL + time.tv_nsec, line.c_str());
        std::fflush(stdout);
    }
    return 0;
}
