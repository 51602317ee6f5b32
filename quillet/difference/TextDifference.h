// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QStringView>

/// What has changed between two texts, by words. Pure functions; any thread.
namespace TextDifference
{

/// A piece of the former text and what stands in its place in the new one. Places and lengths are
/// in UTF-16 units; one of the lengths may be 0.
struct Change {
    qsizetype oldFrom = 0;
    qsizetype oldLength = 0;
    qsizetype newFrom = 0;
    qsizetype newLength = 0;
    friend bool operator==(const Change &, const Change &) = default;
};

/// The changes that turn `before` into `after`, in order, without overlap. Each begins and ends at
/// the edge of a word, and no grapheme is cut. Takes time in proportion to the length; the changes
/// are as few as possible where the texts have much in common, else a few more.
QList<Change> changes(QStringView before, QStringView after);

/// The part of the longer text's words that the texts have in common, from 0 to 1; 1 for two empty
/// texts.
double likeness(QStringView before, QStringView after);

/// `after` with each of `undone`, which are among the changes from `before` to `after`, taken back.
QString withoutChanges(QStringView before, QStringView after, const QList<Change> &undone);

} // namespace TextDifference
