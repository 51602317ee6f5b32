// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "process/ProcessGuard.h"

#include <cstdlib>
#include <cstring>
#ifdef __linux__
#include <sys/prctl.h>
#endif
#include <sys/resource.h>

void guardProcessMemory()
{
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
#if defined(__linux__) && !defined(QUILLET_SANITIZED)
    ::prctl(PR_SET_DUMPABLE, 0);
#endif
}

void forgetVariable(const char *name)
{
    if (char *const value = std::getenv(name))
        std::memset(value, 0, std::strlen(value));
    ::unsetenv(name);
}
