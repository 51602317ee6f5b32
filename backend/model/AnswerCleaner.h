// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// What a model wrote, without what it put around its answer: sections of thoughts, template tokens
/// and delimiter lines, a line that announces the answer, quotation marks or a code fence around
/// the whole, a JSON object around it, and remarks behind it. Each goes only where it cannot be a
/// part of the answer, because `text` (what the model was given) has none of its kind. Line ends
/// become those of `text` unless it mixes them; control characters and characters that cannot be
/// seen go unless `text` has them.
QString cleanedAnswer(const QString &answer, const QString &text, const QString &delimiter);

/// Whether an answer says that the model will not do the task, instead of doing it.
bool isRefusal(const QString &answer, const QString &text);

/// Whether the end of an answer repeats itself as no text does: the model will not come to an end.
bool isLooping(QStringView answer, const QString &text);

/// Cleans an answer while it is written. What it hands out is nearly always a beginning of
/// cleanedAnswer(); where the end of the answer shows otherwise, that one counts.
class AnswerStream
{
public:
    AnswerStream(QString text, QString delimiter);

    /// What `piece` adds to the text.
    QString feed(const QString &piece);

private:
    QString m_text;
    QString m_delimiter;
    QString m_raw;
    /// What of m_raw was handed out or passed over; negative before the text has begun.
    qsizetype m_done = -1;
};
