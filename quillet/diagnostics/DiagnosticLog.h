// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// Writes one line of diagnostics to standard output and flushes it, so that each line can be seen
/// when it happens. Never hand it the user's text. Any thread.
void printLine(const QString &line);

/// Whether printLine() writes anything. True at first. Any thread.
void setDiagnosticsEnabled(bool enabled);
