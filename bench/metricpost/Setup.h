// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "Environment.h"
#include "MetricPost/MetricPostInstance.h"

#include <QTemporaryDir>

#include <chrono>
#include <memory>

namespace metricpost::bench
{

/// A folder of its own for each measurement, with the real clock, settings and transport.
struct Setup {
    Setup();
    std::unique_ptr<MetricPostInstance> makeInstance(bool gzip = false) const;

    QTemporaryDir folder;
    Environment environment;
};

/// An event such as the application sends.
void trackOne(MetricPostInstance &instance);

/// Flushes everything and runs the main event loop until that is done.
void drain(MetricPostInstance &instance);

/// Events in the database that `makeInstance` uses.
int storedRows(const QString &databasePath);

using Clock = std::chrono::steady_clock;

inline double seconds(Clock::duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

/// User and system time of the whole process.
double processCpuSeconds();

} // namespace metricpost::bench
