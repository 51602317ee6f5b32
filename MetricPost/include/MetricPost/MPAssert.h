// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostLogger.h"

#include <QString>

#include <functional>

namespace metricpost
{

/// What happens after a failed MPAssert has been logged. The standard handler stops a
/// development build (one without NDEBUG) and lets a release build go on. Any thread.
using AssertionHandler = std::function<void(const QString &message)>;

/// Replaces the handler and returns the one before.
AssertionHandler setAssertionHandler(AssertionHandler handler);

void assertionFailed(const QString &message);

/// Checks for a programming error of the caller. The message, a function that returns text, is
/// evaluated only when the condition does not hold.
template <class Message> void MPAssert(bool condition, Message &&message)
{
    if (!condition)
        assertionFailed(message());
}

} // namespace metricpost
