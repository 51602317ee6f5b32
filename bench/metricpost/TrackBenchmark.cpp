// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "NullServer.h"
#include "Semaphore.h"
#include "Setup.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <optional>
#include <thread>

namespace metricpost::bench
{

namespace
{

constexpr int callsInARound = 3000;

enum class Calls {
    InARow,
    // As far apart as a person's clicks never are, and long enough for the queue to sleep again, so
    // that each call has to wake it.
    Apart,
};

enum class Server { None, Failing, Hanging };

// In microseconds.
struct Times {
    std::vector<double> elapsed;
    // Of the calling thread; unlike the other it does not count what else the computer does.
    std::vector<double> cpu;
};

double threadCpuSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

double percentile(std::vector<double> values, std::size_t percent)
{
    std::sort(values.begin(), values.end());
    return values[values.size() * percent / 100];
}

/// Times `call`, and runs `afterwards` outside the time, with the number of the call.
template <typename Call, typename Afterwards>
Times callTimes(int calls, Calls manner, Call call, Afterwards afterwards)
{
    Times times;
    for (int i = 0; i < calls; ++i) {
        const double cpuStart = threadCpuSeconds();
        const auto start = Clock::now();
        call();
        times.elapsed.push_back(seconds(Clock::now() - start) * 1e6);
        times.cpu.push_back((threadCpuSeconds() - cpuStart) * 1e6);
        afterwards(i);
        if (manner == Calls::Apart)
            std::this_thread::sleep_for(std::chrono::microseconds(300));
    }
    return times;
}

void report(benchmark::State &state, const Times &all)
{
    state.counters["p50_us"] = percentile(all.elapsed, 50);
    state.counters["p99_us"] = percentile(all.elapsed, 99);
    state.counters["p50_cpu_us"] = percentile(all.cpu, 50);
    state.counters["p99_cpu_us"] = percentile(all.cpu, 99);
    state.counters["calls"] = double(all.elapsed.size());
}

void track(benchmark::State &state, Calls manner, Server kind, int threadCount)
{
    Times all;
    for ([[maybe_unused]] auto iteration : state) {
        const Setup setup;
        std::optional<NullServer> server;
        const auto instance = setup.makeInstance();
        if (kind != Server::None) {
            server.emplace(kind == Server::Failing ? NullServer::Manner::Fail
                                                   : NullServer::Manner::Hang);
            instance->setServerURL(server->url());
        }
        std::vector<Times> times{std::size_t(threadCount)};
        std::vector<std::thread> threads;
        for (auto &mine : times) {
            threads.emplace_back([&] {
                mine = callTimes(
                    callsInARound / threadCount, manner, [&] { trackOne(*instance); },
                    [&](int i) {
                        if (server && i % 10 == 0)
                            instance->flush();
                    });
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        for (const Times &mine : times) {
            all.elapsed.insert(all.elapsed.end(), mine.elapsed.begin(), mine.elapsed.end());
            all.cpu.insert(all.cpu.end(), mine.cpu.begin(), mine.cpu.end());
        }
    }
    report(state, all);
}

// What any call costs that hands something to a thread that sleeps: waking it, and no more.
void wake(benchmark::State &state)
{
    Times all;
    for ([[maybe_unused]] auto iteration : state) {
        Semaphore semaphore;
        std::atomic<bool> ending{false};
        std::thread sleeper([&] {
            while (!ending)
                semaphore.acquire();
        });
        const Times times = callTimes(
            callsInARound, Calls::Apart, [&] { semaphore.release(); }, [](int) {});
        ending = true;
        semaphore.release();
        sleeper.join();
        all.elapsed.insert(all.elapsed.end(), times.elapsed.begin(), times.elapsed.end());
        all.cpu.insert(all.cpu.end(), times.cpu.begin(), times.cpu.end());
    }
    report(state, all);
}

BENCHMARK(wake)->Iterations(3)->UseRealTime();
BENCHMARK_CAPTURE(track, in_a_row, Calls::InARow, Server::None, 1)->Iterations(3)->UseRealTime();
BENCHMARK_CAPTURE(track, in_a_row_server_fails, Calls::InARow, Server::Failing, 1)
    ->Iterations(3)
    ->UseRealTime();
BENCHMARK_CAPTURE(track, in_a_row_server_hangs, Calls::InARow, Server::Hanging, 1)
    ->Iterations(3)
    ->UseRealTime();
BENCHMARK_CAPTURE(track, in_a_row_ten_threads, Calls::InARow, Server::None, 10)
    ->Iterations(3)
    ->UseRealTime();
BENCHMARK_CAPTURE(track, apart, Calls::Apart, Server::None, 1)->Iterations(3)->UseRealTime();
BENCHMARK_CAPTURE(track, apart_server_hangs, Calls::Apart, Server::Hanging, 1)
    ->Iterations(3)
    ->UseRealTime();

} // namespace

} // namespace metricpost::bench
