// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "FileLock.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace metricpost
{

FileLock::FileLock(const QString &path)
    : m_path(path)
{
}

FileLock::~FileLock()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool FileLock::tryLock(Mode mode)
{
    if (m_descriptor < 0) {
        constexpr mode_t ownerOnly = 0600;
        m_descriptor =
            ::open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, ownerOnly);
        if (m_descriptor < 0)
            return true;
    }
    const int operation = mode == Mode::Shared ? LOCK_SH : LOCK_EX;
    int result = 0;
    do
        result = ::flock(m_descriptor, operation | LOCK_NB);
    while (result != 0 && errno == EINTR);
    return result == 0 || errno != EWOULDBLOCK;
}

bool FileLock::lockWithin(Mode mode, std::chrono::milliseconds limit,
                          const std::function<bool()> &isCancelled)
{
    constexpr std::chrono::milliseconds pause{5};
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!tryLock(mode)) {
        if (isCancelled() || std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

void FileLock::unlock()
{
    if (m_descriptor >= 0)
        ::flock(m_descriptor, LOCK_UN);
}

} // namespace metricpost
