// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>

namespace metricpost
{

/// Runs the function on the main thread: later, through its event loop, in the order of the
/// calls. Without a QCoreApplication it never runs, which a warning on standard error says once.
/// Any thread.
void runOnMainQueue(std::function<void()> function);

} // namespace metricpost
