// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/model/ChatCompletion.h"

/// The prompt for a command other than those about Quillet itself; `own` is what
/// one of the user's own commands is to do, and else empty. `delimiter` is a random word that the
/// text does not contain; it marks where the text begins and ends, so that nothing in it can pass
/// for the end.
ChatPrompt makePrompt(const QString &command, const QString &text, const QString &delimiter,
                      const QString &own = {});

/// A word for makePrompt that does not occur in `text`.
QString makeDelimiter(const QString &text);

/// How many times longer than the text an answer may be expected to become.
double expectedGrowth(const QString &command);
