// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// Keeps what this process has in its memory to itself: no core dump is written when it crashes,
/// and other processes of the user can neither trace it nor read its memory. Call it before any
/// text comes in. Without effect under the sanitizers, which trace the process themselves.
void guardProcessMemory();
