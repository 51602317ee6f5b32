// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

namespace metricpost
{

/// The seconds that a "Retry-After" header asks for (RFC 9110, 10.2.3): a decimal number of seconds
/// or an HTTP date. 0 when it is neither or lies in the past, and at most a day. `now` is in
/// seconds since 1970. Any thread.
double retryAfterSeconds(const QByteArray &header, double now);

} // namespace metricpost
