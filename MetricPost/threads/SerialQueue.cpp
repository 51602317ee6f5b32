// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "SerialQueue.h"

#include "UtilityThread.h"

namespace metricpost
{

SerialQueue::SerialQueue(const QString &label)
    : m_label(label)
    , m_thread([this] {
        becomeUtilityThread(m_label.toUtf8());
        work();
        m_finished.release();
    })
{
}

SerialQueue::~SerialQueue()
{
    close(Closing::RunPending);
    if (m_thread.joinable())
        m_thread.join();
}

void SerialQueue::close(Closing closing)
{
    if (closing == Closing::DropPending)
        m_dropPending.store(true);
    m_closing.store(true);
    m_arrivals.release();
}

bool SerialQueue::waitUntilFinished(std::chrono::milliseconds limit)
{
    if (!m_thread.joinable())
        return true;
    if (!m_finished.acquireWithin(limit))
        return false;
    m_thread.join();
    return true;
}

namespace
{

// Stands in the list's head once the thread has taken its last task.
void *const closedMark = reinterpret_cast<void *>(std::uintptr_t{1});

} // namespace

bool SerialQueue::push(Task *task)
{
    auto *const closed = static_cast<Task *>(closedMark);
    Task *newest = m_newest.load(std::memory_order_relaxed);
    do {
        if (newest == closed || m_closing.load(std::memory_order_relaxed)) {
            delete task;
            return false;
        }
        task->next = newest;
    } while (!m_newest.compare_exchange_weak(newest, task, std::memory_order_acq_rel,
                                             std::memory_order_relaxed));
    if (newest == nullptr)
        m_arrivals.release();
    return true;
}

void SerialQueue::work()
{
    while (true) {
        m_arrivals.acquire();
        runAll(m_newest.exchange(nullptr, std::memory_order_acq_rel));
        if (m_closing.load()) {
            runAll(m_newest.exchange(static_cast<Task *>(closedMark), std::memory_order_acq_rel));
            return;
        }
    }
}

void SerialQueue::runAll(Task *newestFirst)
{
    Task *oldestFirst = nullptr;
    while (newestFirst) {
        Task *const next = newestFirst->next;
        newestFirst->next = oldestFirst;
        oldestFirst = newestFirst;
        newestFirst = next;
    }
    while (oldestFirst) {
        const std::unique_ptr<Task> task(oldestFirst);
        oldestFirst = oldestFirst->next;
        if (!m_dropPending.load())
            task->run();
    }
}

} // namespace metricpost
