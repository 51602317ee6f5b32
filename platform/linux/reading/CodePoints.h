// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"

#include <QString>

namespace platform::linux_
{

/// AT-SPI counts characters (code points), the contract counts UTF-16 units.
qint64 codePointCount(const QString &text);

/// The UTF-16 offset of the character at `position`, the text's end when there are fewer.
qint64 utf16Offset(const QString &text, qint64 position);

/// The UTF-16 range of the characters from `start` up to `end`, in whichever order and however far
/// outside the text an application gives them. `count` is what the application takes for the
/// text's length: Qt counts UTF-16 units where it should count characters.
CFRange utf16Range(const QString &text, qint64 start, qint64 end, qint64 count);

/// The text without the U+FEFF that Gecko puts after each character above U+FFFF, so that the
/// characters of what it hands out are as many as its own UTF-16 units.
QString withoutPairMarks(QString text);

/// Whether the answer "selected from `start` to `end`" means the `length` UTF-16 units of `text`
/// from `position` on, in whatever the application counts. Chromium converts its numbers from
/// UTF-16 units to characters twice.
bool isSelection(const QString &text, qsizetype position, qsizetype length, qint64 start,
                 qint64 end);

/// Whether Chromium answers "selected from 0 to 0" for that selection: where its second conversion
/// begins in the middle of a character.
bool isSelectionHidden(const QString &text, qsizetype position, qsizetype length);

/// The text with every kind of line end as a line feed: toolkits differ in what they make of one.
QString withLineFeeds(QString text);

} // namespace platform::linux_
