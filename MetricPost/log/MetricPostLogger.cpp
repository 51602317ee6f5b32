// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MetricPost/MetricPostLogger.h"

#include "ReadWriteLock.h"

#include <QList>
#include <QSet>

#include <algorithm>
#include <utility>

namespace metricpost
{

namespace
{

struct State {
    ReadWriteLock readWriteLock{QStringLiteral("loggerLock")};
    QList<std::shared_ptr<MetricPostLogging>> loggers;
    QSet<MetricPostLogLevel> enabledLevels;
    std::shared_ptr<MetricPostLogging> addedPrintLogging;
};

// Never destroyed: queues may still log while the process ends.
State &state()
{
    static State *const instance = new State;
    return *instance;
}

} // namespace

void MetricPostLogger::addLogging(std::shared_ptr<MetricPostLogging> logging)
{
    state().readWriteLock.write([&] { state().loggers.append(std::move(logging)); });
}

void MetricPostLogger::removeLogging(const std::shared_ptr<MetricPostLogging> &logging)
{
    state().readWriteLock.write([&] { state().loggers.removeOne(logging); });
}

void MetricPostLogger::addPrintLogging()
{
    state().readWriteLock.write([] {
        auto &loggers = state().loggers;
        const bool registered =
            std::any_of(loggers.cbegin(), loggers.cend(), [](const auto &logging) {
                return dynamic_cast<const PrintLogging *>(logging.get()) != nullptr;
            });
        if (!registered) {
            state().addedPrintLogging = std::make_shared<PrintLogging>();
            loggers.append(state().addedPrintLogging);
        }
    });
}

void MetricPostLogger::removePrintLogging()
{
    state().readWriteLock.write(
        [] { state().loggers.removeOne(std::exchange(state().addedPrintLogging, nullptr)); });
}

void MetricPostLogger::enableLevel(MetricPostLogLevel level)
{
    state().readWriteLock.write([&] { state().enabledLevels.insert(level); });
}

void MetricPostLogger::disableLevel(MetricPostLogLevel level)
{
    state().readWriteLock.write([&] { state().enabledLevels.remove(level); });
}

bool MetricPostLogger::isEnabled(MetricPostLogLevel level)
{
    return state().readWriteLock.read([&] { return state().enabledLevels.contains(level); });
}

void MetricPostLogger::forward(MetricPostLogLevel level, const QString &text, const char *path,
                               const char *function)
{
    const QString fullPath = QString::fromUtf8(path);
    const MetricPostLogMessage message{fullPath.mid(fullPath.lastIndexOf(u'/') + 1),
                                       QString::fromUtf8(function), text, level};
    state().readWriteLock.read([&] {
        for (const auto &logging : std::as_const(state().loggers))
            logging->addMessage(message);
    });
}

} // namespace metricpost
