// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>

namespace platform::linux_
{

/// The process whose window shows what `pid` has on the accessibility bus. That is `pid` itself but
/// for pages of WebKitGTK: they are on the bus by themselves, and drawn by the program that has
/// started their process, perhaps in a sandbox. By the kernel's list of processes.
std::int32_t processWithWindow(std::int32_t pid);

} // namespace platform::linux_
