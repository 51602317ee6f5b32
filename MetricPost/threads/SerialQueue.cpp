// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "SerialQueue.h"

#include "UtilityThread.h"

#include <algorithm>
#include <vector>

namespace metricpost
{

namespace
{

// The list's head after the thread has taken its last task.
void *const closedMark = reinterpret_cast<void *>(std::uintptr_t{1});

} // namespace

SerialQueue::SerialQueue(const QString &label)
    : SerialQueue(label, {}, Limits())
{
}

SerialQueue::SerialQueue(const QString &label, std::function<void()> afterGroup,
                         const Limits &limits)
    : m_label(label)
    , m_afterGroup(std::move(afterGroup))
    , m_limits(limits)
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

bool SerialQueue::pushDroppable(Task *task)
{
    m_droppableTasks += 1;
    m_droppableBytes += task->bytes;
    const qint64 bytes = task->bytes;
    if (!push(task)) {
        m_droppableTasks -= 1;
        m_droppableBytes -= bytes;
        return false;
    }
    if (isOverLimits())
        dropOldest();
    return true;
}

bool SerialQueue::isOverLimits() const
{
    return m_droppableTasks.load(std::memory_order_relaxed) > m_limits.maxTasks ||
           m_droppableBytes.load(std::memory_order_relaxed) > m_limits.maxBytes;
}

// Takes the list, thins it out and links it again behind what came meanwhile. The queue's thread
// takes nothing until that is done, so the order stays.
void SerialQueue::dropOldest()
{
    const std::lock_guard lock(m_taking);
    auto *const closed = static_cast<Task *>(closedMark);
    if (m_newest.load() == closed || !isOverLimits())
        return;
    Task *const newest = m_newest.exchange(nullptr, std::memory_order_acq_rel);
    std::vector<Task *> oldestFirst;
    for (Task *task = newest; task; task = task->next)
        oldestFirst.push_back(task);
    std::reverse(oldestFirst.begin(), oldestFirst.end());
    // More than needed, so that the next tasks do not come here again.
    constexpr qint64 share = 8;
    qint64 surplus = m_droppableTasks.load() - (m_limits.maxTasks - m_limits.maxTasks / share);
    qint64 surplusBytes = m_droppableBytes.load() - (m_limits.maxBytes - m_limits.maxBytes / share);
    Task *kept = nullptr;
    for (Task *const task : oldestFirst) {
        if (task->isDroppable() && (surplus > 0 || surplusBytes > 0)) {
            surplus -= 1;
            surplusBytes -= task->bytes;
            m_droppableTasks -= 1;
            m_droppableBytes -= task->bytes;
            m_droppedTasks += 1;
            delete task;
        } else {
            task->next = kept;
            kept = task;
        }
    }
    Task *expected = nullptr;
    if (m_newest.compare_exchange_strong(expected, kept, std::memory_order_acq_rel))
        return;
    // Only its head changes while this looks for its end.
    Task *last = expected;
    while (last->next)
        last = last->next;
    last->next = kept;
}

SerialQueue::Task *SerialQueue::takeAll(Task *replacement)
{
    const std::lock_guard lock(m_taking);
    Task *const taken = m_newest.exchange(replacement, std::memory_order_acq_rel);
    for (const Task *task = taken; task; task = task->next) {
        if (task->isDroppable()) {
            m_droppableTasks -= 1;
            m_droppableBytes -= task->bytes;
        }
    }
    return taken;
}

void SerialQueue::work()
{
    while (true) {
        m_arrivals.acquire();
        runAll(takeAll(nullptr));
        if (m_closing.load()) {
            runAll(takeAll(static_cast<Task *>(closedMark)));
            return;
        }
    }
}

void SerialQueue::runAll(Task *newestFirst)
{
    if (!newestFirst)
        return;
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
    if (m_afterGroup)
        m_afterGroup();
}

} // namespace metricpost
