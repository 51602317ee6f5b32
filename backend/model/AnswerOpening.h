// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <optional>

/// Where the text begins in a model's answer: behind sections of thoughts, channel marks and
/// template tokens, delimiter lines, and a line such as "Here is the improved version:". Each is
/// passed over only where it cannot be a part of the text, because `source` (what the model was
/// given) has none of its kind. With `complete` the answer is whole; without it, nothing is
/// returned while more of the answer is needed to decide.
std::optional<qsizetype> textStart(QStringView answer, const QString &source,
                                   const QString &delimiter, bool complete);

/// The length of what wraps the whole of a text at its start, and the wrapping that must then stand
/// at its end: an opening quotation mark or the first line of a code fence. Zero without one.
struct Wrapping {
    qsizetype length = 0;
    QString end;
};
Wrapping wrappingOf(QStringView text, const QString &source);
