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
