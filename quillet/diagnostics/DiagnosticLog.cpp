// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/diagnostics/DiagnosticLog.h"

#include <atomic>
#include <cstdio>

namespace
{

std::atomic<bool> isEnabled = true;

} // namespace

void setDiagnosticsEnabled(bool enabled)
{
    isEnabled = enabled;
}

void printLine(const QString &line)
{
    if (!isEnabled)
        return;
    // One write a line, so that lines of several threads do not mix.
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}
