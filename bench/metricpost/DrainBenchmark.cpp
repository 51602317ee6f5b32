// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "NullServer.h"
#include "Setup.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>

namespace metricpost::bench
{

namespace
{

// Copies one tracked event until the table holds that many, each at its own time and with an
// identifier of its own, so that they compress no better than real ones.
void multiply(const QString &databasePath, int count)
{
    sqlite3 *database = nullptr;
    sqlite3_open(databasePath.toUtf8().constData(), &database);
    const QByteArray sql =
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
        QByteArray::number(count - 1) +
        ") INSERT INTO metricpost_bench_events(data, time, flag) "
        "SELECT CAST(replace(CAST(data AS TEXT), '\"$mp_event_id\":\"', '\"$mp_event_id\":\"' || "
        "lower(hex(randomblob(8)))) AS BLOB), time + i, 0 FROM metricpost_bench_events, n";
    if (sqlite3_exec(database, sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        std::abort();
    sqlite3_close(database);
}

void drainQueue(benchmark::State &state)
{
    const int count = int(state.range(0));
    double elapsed = 0;
    double cpu = 0;
    double drained = 0;
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        const Setup setup;
        NullServer server(NullServer::Manner::Accept);
        const QString path = setup.folder.filePath(QStringLiteral("bench_MPDB.sqlite"));
        const auto instance = setup.makeInstance(true);
        trackOne(*instance);
        instance->waitUntilStored();
        multiply(path, count);
        instance->setServerURL(server.url());
        state.ResumeTiming();

        const double cpuBefore = processCpuSeconds() - server.cpuSeconds();
        const auto start = Clock::now();
        drain(*instance);
        elapsed += seconds(Clock::now() - start);
        cpu += processCpuSeconds() - server.cpuSeconds() - cpuBefore;
        drained += count;

        state.PauseTiming();
        if (storedRows(path) != 0)
            state.SkipWithError("not everything was sent");
        state.ResumeTiming();
    }
    state.counters["events_per_s"] = drained / elapsed;
    state.counters["cpu_us_per_event"] = cpu / drained * 1e6;
    static double perEventOfTheFirst = 0;
    if (perEventOfTheFirst == 0)
        perEventOfTheFirst = cpu / drained;
    // 1 when the cost is linear in the length of the queue.
    state.counters["cpu_vs_first"] = cpu / drained / perEventOfTheFirst;
}

BENCHMARK(drainQueue)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Iterations(3)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

} // namespace metricpost::bench
