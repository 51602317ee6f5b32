// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

namespace platform
{

/// Whether `found` is `wanted` with nothing but changes that programs make by themselves while they
/// take a text: another kind or number of white space, typographic quotes, dashes and ellipses, a
/// capital at the beginning of a word. A missing, doubled or exchanged letter is none of them.
bool isProgramsOwnChange(const QString &wanted, const QString &found);

} // namespace platform
