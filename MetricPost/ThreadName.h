#pragma once

#include <QByteArray>

namespace metricpost
{

/// Names the calling thread for debuggers and process viewers. Longer names keep their last 15
/// bytes, which is what every system shows; the end is where our labels differ.
void setThreadName(const QByteArray &name);

} // namespace metricpost
