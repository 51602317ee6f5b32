// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "Semaphore.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace metricpost
{

/// Runs tasks one after the other, in the order they came, on a thread of its own. The thread
/// is named after the last 15 bytes of the label, which the kernel shows and where labels differ.
///
/// Any thread may add tasks. Adding takes no lock: it allocates the task, links it with one
/// atomic exchange and wakes the thread only when the queue was empty. The thread takes all
/// tasks that wait as one group.
class SerialQueue
{
public:
    enum class Closing { RunPending, DropPending };

    /// Bounds what droppable tasks hold while they wait. Beyond them the oldest ones go.
    struct Limits {
        qint64 maxTasks = std::numeric_limits<qint64>::max();
        qint64 maxBytes = std::numeric_limits<qint64>::max();
    };

    explicit SerialQueue(const QString &label);
    /// `afterGroup` runs on the queue's thread after each group.
    SerialQueue(const QString &label, std::function<void()> afterGroup, const Limits &limits);
    /// Runs what is pending, however long that takes. Not on the queue's own thread.
    ~SerialQueue();
    Q_DISABLE_COPY_MOVE(SerialQueue)

    const QString &label() const { return m_label; }

    /// Whether the caller is a task of this queue.
    bool isCurrentThread() const { return std::this_thread::get_id() == m_thread.get_id(); }

    /// Returns false, with the task destroyed unrun, when the queue is closed.
    template <class Function> bool async(Function &&function)
    {
        return push(new TaskOf<std::decay_t<Function>>(std::forward<Function>(function)));
    }

    /// The same for a task that may be dropped when too much waits; `bytes` is what it holds.
    template <class Function> bool asyncDroppable(qint64 bytes, Function &&function)
    {
        auto *const task = new TaskOf<std::decay_t<Function>>(std::forward<Function>(function));
        task->bytes = bytes;
        return pushDroppable(task);
    }

    /// Droppable tasks that were dropped.
    qint64 droppedTasks() const { return m_droppedTasks.load(); }

    /// Waits until the task has run. Returns false when it never will because the queue is
    /// closed. A task of this queue must not call it.
    template <class Function> bool sync(Function &&function)
    {
        auto outcome = std::make_shared<Outcome>();
        async([&function, signal = Signal(outcome)] {
            function();
            signal.outcome->ran.store(true, std::memory_order_release);
        });
        outcome->done.acquire();
        return outcome->ran.load(std::memory_order_acquire);
    }

    /// Accepts no further task; a task that is running is always left to end.
    void close(Closing closing);

    /// Waits until a closed queue's thread has ended. False when the time is up before.
    /// One thread at a time may wait.
    bool waitUntilFinished(std::chrono::milliseconds limit);

private:
    struct Task {
        virtual ~Task() = default;
        virtual void run() = 0;
        bool isDroppable() const { return bytes > 0; }
        Task *next = nullptr;
        qint64 bytes = 0;
    };

    template <class Function> struct TaskOf final : Task {
        explicit TaskOf(Function f)
            : function(std::move(f))
        {
        }
        void run() override { function(); }
        Function function;
    };

    struct Outcome {
        Semaphore done;
        std::atomic<bool> ran{false};
    };

    // Signals when its task is destroyed, run or not, so that no thread waits for a dropped task.
    struct Signal {
        explicit Signal(std::shared_ptr<Outcome> o)
            : outcome(std::move(o))
        {
        }
        Signal(Signal &&) noexcept = default;
        Signal &operator=(Signal &&) = delete;
        ~Signal()
        {
            if (outcome)
                outcome->done.release();
        }
        std::shared_ptr<Outcome> outcome;
    };

    bool push(Task *task);
    bool pushDroppable(Task *task);
    void work();
    Task *takeAll(Task *replacement);
    void runAll(Task *newestFirst);
    bool isOverLimits() const;
    void dropOldest();

    const QString m_label;
    const std::function<void()> m_afterGroup;
    const Limits m_limits;
    // Held while the list is taken; not needed for adding to it.
    std::mutex m_taking;
    std::atomic<qint64> m_droppableTasks{0};
    std::atomic<qint64> m_droppableBytes{0};
    std::atomic<qint64> m_droppedTasks{0};
    std::atomic<Task *> m_newest{nullptr};
    Semaphore m_arrivals;
    Semaphore m_finished;
    std::atomic<bool> m_closing{false};
    std::atomic<bool> m_dropPending{false};
    std::thread m_thread;
};

} // namespace metricpost
