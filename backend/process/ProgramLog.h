// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// Writes one line to standard error, with the program's name in front. Callers
/// give it no text of the user's and no key. Thread: any.
void logLine(const QString &line);
