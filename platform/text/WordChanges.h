// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QStringView>

namespace platform
{

/// A piece of the former text and what stands in its place in the new one. Places and lengths are
/// in UTF-16 units; one of the lengths may be 0.
struct WordChange {
    qsizetype oldFrom = 0;
    qsizetype oldLength = 0;
    qsizetype newFrom = 0;
    qsizetype newLength = 0;
    friend bool operator==(const WordChange &, const WordChange &) = default;
};

/// The changes that turn `before` into `after` as a reader sees them, in order, without overlap.
/// White space counts only where words change. Each begins and ends at the edge of a word, and no
/// grapheme is cut. Takes time in proportion to the length. Any thread.
QList<WordChange> wordChanges(QStringView before, QStringView after);

/// The part of the longer text's words that the texts have in common, from 0 to 1; 1 for two empty
/// texts.
double likeness(QStringView before, QStringView after);

/// `after` with each of `undone`, which are among the changes from `before` to `after`, taken back.
QString withoutChanges(QStringView before, QStringView after, const QList<WordChange> &undone);

} // namespace platform
