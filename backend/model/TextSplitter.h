// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QString>

/// A part of a text. The parts that are not for the model hold the white space around the
/// others. All parts together are the text.
struct TextPart {
    QString text;
    bool forModel = false;
};

/// How many tokens a model takes `text` for, on the safe side. Tokens are pieces
/// of UTF-8: some four bytes each in English, fewer elsewhere.
int estimatedTokens(QStringView text);

/// Splits `text` into parts of `maxTokens` at most: between paragraphs, and
/// where a paragraph alone is too long between lines, sentences, words or, at
/// last, characters as a reader sees them.
QList<TextPart> splitText(const QString &text, int maxTokens);

/// `text` itself, or its beginning and end with "[…]" between them where it has
/// more than `maxTokens`.
QString shortened(const QString &text, int maxTokens);
