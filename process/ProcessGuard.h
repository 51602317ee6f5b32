// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// Keeps what this process has in its memory to itself: no core dump is written when it crashes,
/// and other processes of the user can neither trace it nor read its memory. Call it before any
/// text comes in. Without effect under the sanitizers, which trace the process themselves.
void guardProcessMemory();

/// Takes a variable that holds a secret out of the environment: out of sight of programs that this
/// one starts, and of /proc, which shows the memory that the system put the variables into.
/// Thread: only while no other reads the environment.
void forgetVariable(const char *name);
