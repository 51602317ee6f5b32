// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QStringView>

#include <vector>

namespace offline
{

/// A stretch of UTF-16 units.
struct Span {
    qsizetype start = 0;
    qsizetype length = 0;
    qsizetype end() const { return start + length; }
};

/// The parts of a text that no rule may change, in order: code fences, `inline
/// code`, lines that look like code, mark-up tags, URLs, paths, e-mail
/// addresses, @mentions, #hashtags, options, identifiers (camelCase,
/// snake_case, with digits) and whatever else holds characters that prose does
/// not. Linear in the length of the text.
std::vector<Span> protectedSpans(QStringView text);

} // namespace offline
