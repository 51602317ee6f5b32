// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace metricpost
{

/// The library's version. Events report it as "$lib_version"; the build reads it from this line.
inline constexpr char libraryVersion[] = "5.1.0";

} // namespace metricpost
