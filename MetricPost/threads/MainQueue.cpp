// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MainQueue.h"

#include <QCoreApplication>

#include <deque>
#include <mutex>
#include <utility>

namespace metricpost
{

namespace
{

struct Pending {
    std::mutex mutex;
    std::deque<std::function<void()>> functions;
};

// Never destroyed: a queue may still hand over a function while the process ends.
Pending &pending()
{
    static auto *const instance = new Pending;
    return *instance;
}

void runNext()
{
    std::function<void()> function;
    {
        const std::lock_guard lock(pending().mutex);
        function = std::move(pending().functions.front());
        pending().functions.pop_front();
    }
    function();
}

} // namespace

void runOnMainQueue(std::function<void()> function)
{
    auto *const application = QCoreApplication::instance();
    if (!application) {
        static std::once_flag warned;
        std::call_once(warned, [] {
            qWarning("MetricPost: without a QCoreApplication completions and the flush timer do "
                     "not run");
        });
        return;
    }
    {
        const std::lock_guard lock(pending().mutex);
        pending().functions.push_back(std::move(function));
    }
    QMetaObject::invokeMethod(application, runNext, Qt::QueuedConnection);
}

} // namespace metricpost
