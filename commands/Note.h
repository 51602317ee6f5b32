// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringView>

/// An answer's body that begins with this is a note: a sentence for the user, shown as it stands
/// and never written into a document.
inline constexpr QStringView notePrefix = u"\u24d8 ";

inline bool isNote(QStringView body)
{
    return body.startsWith(notePrefix);
}

/// `sentence` as a note.
inline QString asNote(const QString &sentence)
{
    return isNote(sentence) ? sentence : notePrefix.toString() + sentence;
}
