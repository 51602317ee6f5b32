// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// How fast the analytics client is, and how fast against plain SQLite in the same run:
//   cmake --preset bench && cmake --build --preset bench --target bench_metricpost
//   build/bench/bench/metricpost/bench_metricpost
// The databases lie in a temporary folder; set TMPDIR to measure another disk.
#include <QCoreApplication>

#include <benchmark/benchmark.h>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
