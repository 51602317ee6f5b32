// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringView>

namespace offline
{

/// How the letters of a word are cased.
enum class LetterCase { Lower, Capital, Upper, Mixed };

inline bool isApostrophe(QChar c)
{
    return c == u'\'' || c == u'\u2019';
}

inline bool isLineBreak(QChar c)
{
    return c == u'\n' || c == u'\r' || c == u'\u2028' || c == u'\u2029';
}

inline bool isAsciiLower(QChar c)
{
    return c >= u'a' && c <= u'z';
}

LetterCase letterCase(QStringView word);

/// `replacement` cased like `original`: "Their" gives "There", "THEIR" "THERE".
QString inCaseOf(QStringView original, const QString &replacement);

/// The text with its first letter as a capital.
QString capitalised(const QString &text);

} // namespace offline
