// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/writing/BackendService.h"

/// Whether `command` needs a text. The commands under "more" are about Quillet itself.
bool worksOnText(const QString &command);

/// What went wrong and what the user can do about it, without a word of the request.
QString failureSentence(const BackendFailure &failure);
