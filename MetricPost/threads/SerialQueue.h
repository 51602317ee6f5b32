// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "Semaphore.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>

namespace metricpost
{

/// Runs tasks one after the other, in the order they came, on a thread of its own. The thread
/// bears the end of the label, where labels differ, cut to the 15 bytes that the kernel shows.
///
/// Any thread may add tasks. Adding takes no lock: it allocates the task, links it with one
/// atomic exchange and wakes the thread only when the queue was empty.
class SerialQueue
{
public:
    enum class Closing { RunPending, DropPending };

    explicit SerialQueue(const QString &label);
    /// Runs what is pending, however long that takes.
    ~SerialQueue();
    Q_DISABLE_COPY_MOVE(SerialQueue)

    const QString &label() const { return m_label; }

    /// Returns false, with the task destroyed unrun, when the queue is closed.
    template <class Function> bool async(Function &&function)
    {
        return push(new TaskOf<std::decay_t<Function>>(std::forward<Function>(function)));
    }

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
        Task *next = nullptr;
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

    // Signals when its task is destroyed, run or not, so that nobody waits for a dropped task.
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
    void work();
    void runAll(Task *newestFirst);

    const QString m_label;
    std::atomic<Task *> m_newest{nullptr};
    Semaphore m_arrivals;
    Semaphore m_finished;
    std::atomic<bool> m_closing{false};
    std::atomic<bool> m_dropPending{false};
    std::thread m_thread;
};

} // namespace metricpost
