// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/writing/WritingService.h"

#include <functional>
#include <memory>

/// Has a sentence of ours written by what is set up now. `told` hears in words what was written, by
/// whom and how long it took, or why nothing was. Main thread; the request's end ends it.
std::unique_ptr<BackendRequest> writeSample(WritingService &writing, const QString &command,
                                            std::function<void(const QString &outcome)> told);
