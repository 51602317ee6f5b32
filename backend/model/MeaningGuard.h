// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>

/// What a rewriting must carry over and did not: numbers, links, mail addresses, code in backticks
/// and names (capitalised words inside a sentence) of `text` that `answer` does not have. In the
/// order of the text, each once.
QStringList lostFacts(const QString &text, const QString &answer);

/// How much of a text a correction changed: 0 when every word is still there in its order, 1 when
/// none is. Words are compared without case and punctuation.
double changedShare(const QString &text, const QString &answer);

/// `text` without emoji and the white space that goes with them.
QString withoutEmoji(const QString &text);
