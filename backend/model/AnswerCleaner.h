// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// What a model wrote, without what it wrapped around its answer: a section of
/// thoughts in front, the delimiter lines, a code fence around the whole. Each
/// goes only where it cannot be a part of the answer, because `text` (what the
/// model was given) has none of its kind. Line ends become those of `text` unless
/// it mixes them, and
/// control characters, which no writing needs, are dropped.
QString cleanedAnswer(const QString &answer, const QString &text, const QString &delimiter);
