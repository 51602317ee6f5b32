// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "SerialQueue.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using metricpost::SerialQueue;

TEST(SerialQueueTest, RunsEachProducersTasksOnceAndInOrder)
{
    constexpr int producers = 8;
    constexpr int each = 5'000;
    std::vector<std::vector<int>> seen(producers);
    {
        SerialQueue queue(QStringLiteral("test"));
        std::vector<std::thread> threads;
        threads.reserve(producers);
        for (int p = 0; p < producers; ++p) {
            threads.emplace_back([&, p] {
                for (int i = 0; i < each; ++i)
                    queue.async([&seen, p, i] { seen[std::size_t(p)].push_back(i); });
            });
        }
        for (std::thread &thread : threads)
            thread.join();
    }
    for (const auto &numbers : seen) {
        ASSERT_EQ(numbers.size(), std::size_t(each));
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
}

TEST(SerialQueueTest, ClosingRunsOrDropsWhatIsPendingAndReleasesWhoWaits)
{
    for (const auto closing :
         {SerialQueue::Closing::RunPending, SerialQueue::Closing::DropPending}) {
        SerialQueue queue(QStringLiteral("test"));
        metricpost::Semaphore started;
        metricpost::Semaphore gate;
        int ran = 0;
        std::atomic<bool> syncRan{false};
        queue.async([&] {
            started.release();
            gate.acquire();
        });
        started.acquire();
        queue.async([&] { ++ran; });
        std::thread waiting([&] { syncRan = queue.sync([] {}); });
        queue.close(closing);
        EXPECT_FALSE(queue.async([&] { ++ran; }));
        EXPECT_FALSE(queue.waitUntilFinished(std::chrono::milliseconds(1)));
        gate.release();
        waiting.join();
        EXPECT_TRUE(queue.waitUntilFinished(std::chrono::minutes(1)));
        const bool runs = closing == SerialQueue::Closing::RunPending;
        EXPECT_EQ(ran, runs ? 1 : 0);
        EXPECT_FALSE(queue.sync([] {}));
        EXPECT_TRUE(runs || !syncRan);
    }
}

TEST(SerialQueueTest, TellsWhenAGroupIsOver)
{
    std::vector<int> events;
    metricpost::Semaphore started;
    metricpost::Semaphore gate;
    SerialQueue queue(QStringLiteral("test"), [&] { events.push_back(0); }, {});
    queue.async([&] {
        started.release();
        gate.acquire();
    });
    started.acquire();
    for (int i = 1; i <= 3; ++i)
        queue.async([&, i] { events.push_back(i); });
    EXPECT_FALSE(queue.isCurrentThread());
    bool isOwn = false;
    gate.release();
    queue.sync([&] { isOwn = queue.isCurrentThread(); });
    EXPECT_TRUE(isOwn);
    queue.close(SerialQueue::Closing::RunPending);
    ASSERT_TRUE(queue.waitUntilFinished(std::chrono::minutes(1)));
    // What waited ran as one group; the sync was in it or was a group of its own.
    events.resize(5);
    EXPECT_EQ(events, (std::vector<int>{0, 1, 2, 3, 0}));
}

TEST(SerialQueueTest, DropsTheOldestDroppableTasksBeyondItsLimits)
{
    constexpr qint64 maxTasks = 80;
    constexpr int each = 1'000;
    for (const SerialQueue::Limits &limits :
         {SerialQueue::Limits{.maxTasks = maxTasks}, SerialQueue::Limits{.maxBytes = 8'000}}) {
        std::vector<int> ran;
        int kept = 0;
        metricpost::Semaphore started;
        metricpost::Semaphore gate;
        SerialQueue queue(QStringLiteral("test"), {}, limits);
        queue.async([&] {
            started.release();
            gate.acquire();
        });
        started.acquire();
        for (int i = 0; i < each; ++i) {
            queue.asyncDroppable(100, [&, i] { ran.push_back(i); });
            queue.async([&] { ++kept; });
        }
        gate.release();
        queue.sync([] {});
        EXPECT_EQ(kept, each);
        EXPECT_LE(qint64(ran.size()), maxTasks);
        EXPECT_GE(qint64(ran.size()), maxTasks / 2);
        EXPECT_EQ(queue.droppedTasks(), each - qint64(ran.size()));
        EXPECT_EQ(ran.back(), each - 1);
        EXPECT_EQ(ran.back() - ran.front() + 1, int(ran.size())) << "the newest, without gaps";
        // What ran no longer counts.
        for (int i = 0; i < 10; ++i)
            queue.asyncDroppable(100, [&, i] { ran.push_back(i); });
        queue.sync([] {});
        EXPECT_EQ(queue.droppedTasks(), each + 10 - qint64(ran.size()));
        EXPECT_EQ(ran.back(), 9);
    }
}

TEST(SerialQueueTest, DroppingKeepsTheOrderOfSeveralProducers)
{
    constexpr int producers = 4;
    constexpr int each = 5'000;
    std::vector<std::vector<int>> seen(producers);
    qint64 dropped = 0;
    {
        SerialQueue queue(QStringLiteral("test"), {}, {.maxTasks = 50});
        std::vector<std::thread> threads;
        threads.reserve(producers);
        for (int p = 0; p < producers; ++p) {
            threads.emplace_back([&, p] {
                for (int i = 0; i < each; ++i)
                    queue.asyncDroppable(1, [&seen, p, i] { seen[std::size_t(p)].push_back(i); });
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        queue.close(SerialQueue::Closing::RunPending);
        ASSERT_TRUE(queue.waitUntilFinished(std::chrono::minutes(1)));
        dropped = queue.droppedTasks();
    }
    qint64 ran = 0;
    for (const auto &numbers : seen) {
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
        ran += qint64(numbers.size());
    }
    EXPECT_EQ(ran + dropped, qint64(producers) * each);
}
