#include "NullServer.h"
#include "Setup.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <optional>
#include <thread>

namespace metricpost::bench
{

namespace
{

enum class Server { None, Failing, Hanging };

std::vector<double> callTimes(MetricPostInstance &instance, int calls, bool flushing)
{
    std::vector<double> microseconds;
    microseconds.reserve(std::size_t(calls));
    for (int i = 0; i < calls; ++i) {
        const auto start = Clock::now();
        trackOne(instance);
        microseconds.push_back(seconds(Clock::now() - start) * 1e6);
        if (flushing && i % 10 == 0)
            instance.flush();
        // As far apart as a person's clicks never are, and long enough for the queue to sleep
        // again, so that each call has to wake it.
        std::this_thread::sleep_for(std::chrono::microseconds(300));
    }
    return microseconds;
}

void track(benchmark::State &state, Server kind, int threadCount)
{
    constexpr int calls = 3000;
    std::vector<double> all;
    for ([[maybe_unused]] auto iteration : state) {
        const Setup setup;
        std::optional<NullServer> server;
        const auto instance = setup.makeInstance();
        if (kind != Server::None) {
            server.emplace(kind == Server::Failing ? NullServer::Manner::Fail
                                                   : NullServer::Manner::Hang);
            instance->setServerURL(server->url());
        }
        std::vector<std::vector<double>> times{std::size_t(threadCount)};
        std::vector<std::thread> threads;
        for (auto &mine : times) {
            threads.emplace_back(
                [&] { mine = callTimes(*instance, calls / threadCount, server.has_value()); });
        }
        for (std::thread &thread : threads)
            thread.join();
        for (const auto &mine : times)
            all.insert(all.end(), mine.begin(), mine.end());
    }
    std::sort(all.begin(), all.end());
    state.counters["p50_us"] = all[all.size() / 2];
    state.counters["p99_us"] = all[all.size() * 99 / 100];
    state.counters["max_us"] = all.back();
    state.counters["calls"] = double(all.size());
}

BENCHMARK_CAPTURE(track, idle, Server::None, 1)->Iterations(3)->UseRealTime();
BENCHMARK_CAPTURE(track, server_fails, Server::Failing, 1)->Iterations(3)->UseRealTime();
BENCHMARK_CAPTURE(track, server_hangs, Server::Hanging, 1)->Iterations(3)->UseRealTime();
BENCHMARK_CAPTURE(track, ten_threads, Server::None, 10)->Iterations(3)->UseRealTime();

} // namespace

} // namespace metricpost::bench
