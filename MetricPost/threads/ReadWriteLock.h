// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <mutex>
#include <shared_mutex>
#include <utility>

namespace metricpost
{

/// A lock with many readers or one writer. The label says in a debugger what it guards.
/// Any thread. Not recursive: neither function may be called from within either.
class ReadWriteLock
{
public:
    explicit ReadWriteLock(QString label)
        : m_label(std::move(label))
    {
    }

    const QString &label() const { return m_label; }

    template <class Function> decltype(auto) read(Function &&function) const
    {
        const std::shared_lock lock(m_mutex);
        return std::forward<Function>(function)();
    }

    template <class Function> decltype(auto) write(Function &&function)
    {
        const std::unique_lock lock(m_mutex);
        return std::forward<Function>(function)();
    }

private:
    const QString m_label;
    mutable std::shared_mutex m_mutex;
};

} // namespace metricpost
