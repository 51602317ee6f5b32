// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <chrono>
#include <functional>

namespace metricpost
{

/// An advisory lock (flock) on a file of its own, against other processes and against other locks
/// of this process. The system releases it when the process ends. One thread at a time.
class FileLock
{
public:
    enum class Mode { Shared, Exclusive };

    /// The file is created, for its owner alone, with the first attempt to lock it.
    explicit FileLock(const QString &path);
    ~FileLock();
    Q_DISABLE_COPY_MOVE(FileLock)

    /// Takes the lock, or changes its mode. False when another holder prevents that; the lock is
    /// then not held in either mode. True where the file system has no locks.
    bool tryLock(Mode mode);
    /// Tries until the limit is over or `isCancelled` says so.
    bool lockWithin(Mode mode, std::chrono::milliseconds limit,
                    const std::function<bool()> &isCancelled);
    void unlock();

private:
    const QString m_path;
    int m_descriptor = -1;
};

} // namespace metricpost
