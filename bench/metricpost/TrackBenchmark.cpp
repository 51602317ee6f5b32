#include "NullServer.h"
#include "Setup.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <optional>
#include <thread>

namespace metricpost::bench
{

namespace
{

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

Times callTimes(MetricPostInstance &instance, int calls, bool flushing)
{
    Times times;
    for (int i = 0; i < calls; ++i) {
        const double cpuStart = threadCpuSeconds();
        const auto start = Clock::now();
        trackOne(instance);
        times.elapsed.push_back(seconds(Clock::now() - start) * 1e6);
        times.cpu.push_back((threadCpuSeconds() - cpuStart) * 1e6);
        if (flushing && i % 10 == 0)
            instance.flush();
        // As far apart as a person's clicks never are, and long enough for the queue to sleep
        // again, so that each call has to wake it.
        std::this_thread::sleep_for(std::chrono::microseconds(300));
    }
    return times;
}

void track(benchmark::State &state, Server kind, int threadCount)
{
    constexpr int calls = 3000;
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
            threads.emplace_back(
                [&] { mine = callTimes(*instance, calls / threadCount, server.has_value()); });
        }
        for (std::thread &thread : threads)
            thread.join();
        for (const Times &mine : times) {
            all.elapsed.insert(all.elapsed.end(), mine.elapsed.begin(), mine.elapsed.end());
            all.cpu.insert(all.cpu.end(), mine.cpu.begin(), mine.cpu.end());
        }
    }
    state.counters["p50_us"] = percentile(all.elapsed, 50);
    state.counters["p99_us"] = percentile(all.elapsed, 99);
    state.counters["p50_cpu_us"] = percentile(all.cpu, 50);
    state.counters["p99_cpu_us"] = percentile(all.cpu, 99);
    state.counters["calls"] = double(all.elapsed.size());
}

BENCHMARK_CAPTURE(track, idle, Server::None, 1)->Iterations(3)->UseRealTime();
BENCHMARK_CAPTURE(track, server_fails, Server::Failing, 1)->Iterations(3)->UseRealTime();
BENCHMARK_CAPTURE(track, server_hangs, Server::Hanging, 1)->Iterations(3)->UseRealTime();
BENCHMARK_CAPTURE(track, ten_threads, Server::None, 10)->Iterations(3)->UseRealTime();

} // namespace

} // namespace metricpost::bench
