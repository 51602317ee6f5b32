// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MPDB.h"
#include "Setup.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <thread>
#include <vector>

namespace metricpost::bench
{

namespace
{

constexpr int eventsInARound = 1000;

// The statements of the store, with nothing around them.
class PlainSqlite
{
public:
    explicit PlainSqlite(const QString &path)
    {
        sqlite3_open(path.toUtf8().constData(), &m_database);
        sqlite3_exec(m_database,
                     "PRAGMA journal_mode=WAL;"
                     "CREATE TABLE t(id integer primary key autoincrement,data blob,time real,"
                     "flag integer);"
                     "CREATE INDEX idx_t_time ON t (time);",
                     nullptr, nullptr, nullptr);
    }
    ~PlainSqlite() { sqlite3_close(m_database); }
    Q_DISABLE_COPY_MOVE(PlainSqlite)

    void insert(const QByteArray &data, double time)
    {
        sqlite3_stmt *statement = nullptr;
        sqlite3_prepare_v2(m_database, "INSERT INTO t (data, flag, time) VALUES(?, ?, ?);", -1,
                           &statement, nullptr);
        sqlite3_bind_blob(statement, 1, data.constData(), int(data.size()), SQLITE_TRANSIENT);
        sqlite3_bind_int(statement, 2, 0);
        sqlite3_bind_double(statement, 3, time);
        if (sqlite3_step(statement) != SQLITE_DONE)
            std::abort();
        sqlite3_finalize(statement);
    }

private:
    sqlite3 *m_database = nullptr;
};

QByteArray storedRecord(const QString &databasePath)
{
    sqlite3 *database = nullptr;
    sqlite3_stmt *statement = nullptr;
    QByteArray data;
    sqlite3_open(databasePath.toUtf8().constData(), &database);
    sqlite3_prepare_v2(database, "SELECT data FROM metricpost_bench_events LIMIT 1", -1, &statement,
                       nullptr);
    if (sqlite3_step(statement) == SQLITE_ROW) {
        data = QByteArray(static_cast<const char *>(sqlite3_column_blob(statement, 0)),
                          sqlite3_column_bytes(statement, 0));
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return data;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Rounds of both take turns, so that a busy disk slows both.
void store(benchmark::State &state)
{
    const Setup setup;
    const auto instance = setup.makeInstance();
    trackOne(*instance);
    instance->waitUntilStored();
    const QByteArray record =
        storedRecord(setup.folder.filePath(QStringLiteral("bench_MPDB.sqlite")));
    PlainSqlite plain(setup.folder.filePath(QStringLiteral("plain.sqlite")));

    std::vector<double> ours;
    std::vector<double> theirs;
    std::vector<double> ratios;
    for ([[maybe_unused]] auto iteration : state) {
        auto start = Clock::now();
        for (int i = 0; i < eventsInARound; ++i)
            trackOne(*instance);
        instance->waitUntilStored();
        ours.push_back(eventsInARound / seconds(Clock::now() - start));
        start = Clock::now();
        std::thread([&] {
            for (int i = 0; i < eventsInARound; ++i)
                plain.insert(record, setup.environment.now());
        }).join();
        theirs.push_back(eventsInARound / seconds(Clock::now() - start));
        ratios.push_back(ours.back() / theirs.back());
    }
    state.counters["events_per_s"] = median(ours);
    state.counters["plain_per_s"] = median(theirs);
    state.counters["ratio"] = median(ratios);
    state.counters["record_bytes"] = double(record.size());
}

// Many events, and the end of the program right behind them.
void shutdownUnderLoad(benchmark::State &state)
{
    constexpr int events = 50'000;
    constexpr std::chrono::seconds limit{1};
    std::vector<double> lost;
    std::vector<double> milliseconds;
    for ([[maybe_unused]] auto iteration : state) {
        const Setup setup;
        const auto instance = setup.makeInstance();
        for (int i = 0; i < events; ++i)
            trackOne(*instance);
        const auto start = Clock::now();
        instance->shutdown(limit);
        milliseconds.push_back(seconds(Clock::now() - start) * 1e3);
        lost.push_back(events -
                       storedRows(setup.folder.filePath(QStringLiteral("bench_MPDB.sqlite"))));
    }
    state.counters["lost_events"] = median(lost);
    state.counters["shutdown_ms"] = median(milliseconds);
}

BENCHMARK(shutdownUnderLoad)->Iterations(5)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(store)->Iterations(21)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

} // namespace metricpost::bench
