// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>

namespace metricpost
{

/// A length of time with fractions, as in the options.
using Seconds = std::chrono::duration<double>;

} // namespace metricpost
