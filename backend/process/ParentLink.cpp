// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/process/ParentLink.h"

#include <cerrno>
#include <cstdlib>
#include <thread>
#include <unistd.h>

namespace
{

constexpr qsizetype maxSecret = 1024;

/// Like read(2), but goes on after a signal.
ssize_t readInput(char *bytes, std::size_t size)
{
    ssize_t count = 0;
    do {
        count = ::read(STDIN_FILENO, bytes, size);
    } while (count < 0 && errno == EINTR);
    return count;
}

} // namespace

std::optional<QByteArray> ParentLink::readSecret()
{
    QByteArray line;
    char c = 0;
    while (readInput(&c, 1) == 1) {
        if (c == '\n')
            return line.isEmpty() ? std::nullopt : std::optional(line);
        line += c;
        if (line.size() > maxSecret)
            break;
    }
    return std::nullopt;
}

void ParentLink::endProcessWithParent()
{
    std::thread([] {
        char bytes[512];
        while (readInput(bytes, sizeof bytes) > 0)
            ;
        std::_Exit(EXIT_SUCCESS);
    }).detach();
}
