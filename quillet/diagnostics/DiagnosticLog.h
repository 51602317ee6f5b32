// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// Writes one line of diagnostics to standard output and flushes it, so that whoever watches sees
/// each line when it happens. Never hand it the user's text. Any thread.
void printLine(const QString &line);
