// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostLogging.h"

#include <QString>

#include <memory>

namespace metricpost
{

/// The one place that the library reports to. No level is enabled at first, so it is silent
/// until a caller switches it on. Any thread.
///
/// Messages are functions that return text; they are evaluated only when their level is enabled.
class MetricPostLogger
{
public:
    static void addLogging(std::shared_ptr<MetricPostLogging> logging);
    static void removeLogging(const std::shared_ptr<MetricPostLogging> &logging);
    /// Registers a sink that prints, unless there is one already.
    static void addPrintLogging();
    /// Removes the one that addPrintLogging registered.
    static void removePrintLogging();
    static void enableLevel(MetricPostLogLevel level);
    static void disableLevel(MetricPostLogLevel level);

    template <class Message>
    static void debug(Message &&message, const char *path = __builtin_FILE(),
                      const char *function = __builtin_FUNCTION())
    {
        log(MetricPostLogLevel::debug, message, path, function);
    }
    template <class Message>
    static void info(Message &&message, const char *path = __builtin_FILE(),
                     const char *function = __builtin_FUNCTION())
    {
        log(MetricPostLogLevel::info, message, path, function);
    }
    template <class Message>
    static void warn(Message &&message, const char *path = __builtin_FILE(),
                     const char *function = __builtin_FUNCTION())
    {
        log(MetricPostLogLevel::warning, message, path, function);
    }
    template <class Message>
    static void error(Message &&message, const char *path = __builtin_FILE(),
                      const char *function = __builtin_FUNCTION())
    {
        log(MetricPostLogLevel::error, message, path, function);
    }

private:
    template <class Message>
    static void log(MetricPostLogLevel level, Message &&message, const char *path,
                    const char *function)
    {
        if (isEnabled(level))
            forward(level, message(), path, function);
    }

    static bool isEnabled(MetricPostLogLevel level);
    static void forward(MetricPostLogLevel level, const QString &text, const char *path,
                        const char *function);
};

} // namespace metricpost
