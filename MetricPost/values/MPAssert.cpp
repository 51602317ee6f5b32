// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MetricPost/MPAssert.h"

#include <QtGlobal>

#include <mutex>

namespace metricpost
{

namespace
{

void stopDevelopmentBuild([[maybe_unused]] const QString &message)
{
#ifndef NDEBUG
    qFatal("%s", qPrintable(message));
#endif
}

std::mutex handlerMutex;
AssertionHandler handler = stopDevelopmentBuild;

} // namespace

AssertionHandler setAssertionHandler(AssertionHandler replacement)
{
    const std::lock_guard lock(handlerMutex);
    return std::exchange(handler, std::move(replacement));
}

void assertionFailed(const QString &message)
{
    MetricPostLogger::error([&] { return message; });
    AssertionHandler current;
    {
        const std::lock_guard lock(handlerMutex);
        current = handler;
    }
    current(message);
}

} // namespace metricpost
