// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/process/ProgramLog.h"

#include <cstdio>

void logLine(const QString &line)
{
    // One call a line, so that lines of several threads do not mix.
    const QByteArray bytes = "quillet-backend: " + line.simplified().toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stderr);
}
