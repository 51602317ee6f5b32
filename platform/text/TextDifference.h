// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QString>

namespace platform
{

/// One stretch of a text that is to be replaced. Positions and lengths are UTF-16 units of the text
/// before, and never cut a character as the user sees it.
struct TextEdit {
    qsizetype position = 0;
    qsizetype length = 0;
    QString replacement;

    qsizetype end() const { return position + length; }
    friend bool operator==(const TextEdit &, const TextEdit &) = default;
};

/// The edits that turn `before` into `after`, in the order of their positions and with something
/// equal between each two. They cover whole words, and whole characters as the user sees them where
/// there are no words. Texts that have little in common give one edit, between what both begin and
/// both end with. Any thread; a few milliseconds for texts of 5,000 characters.
QList<TextEdit> textDifference(const QString &before, const QString &after);

/// The same edits with those that lie no further than `maxGap` units apart made one. What lies
/// between becomes a part of the replacement.
QList<TextEdit> joinedEdits(const QList<TextEdit> &edits, const QString &before, qsizetype maxGap);

/// The text that the edits make of `before`.
QString withEdits(const QString &before, const QList<TextEdit> &edits);

/// Where a position of the text before is after the edits. One within an edit keeps its distance
/// from the edit's beginning, as far as the replacement reaches.
qsizetype movedPosition(const QList<TextEdit> &edits, qsizetype position);

/// The characters, as the user sees them, that are in one of the texts and not in the other: those
/// that the edits remove or insert, whichever are more, summed up.
qsizetype changedCharacters(const QList<TextEdit> &edits, const QString &before);

} // namespace platform
