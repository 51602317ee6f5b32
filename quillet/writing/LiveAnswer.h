// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringDecoder>

#include <optional>

/// A further piece of an answer that is still being written.
struct AnswerPiece {
    QString text;
    /// The pieces before this one are withdrawn.
    bool startsOver = false;
};

/// Puts the body of an answer together while it comes. With marks (the backend said
/// "Preference-Applied: live"), U+0000 changes nothing, U+0018 withdraws everything before it, and
/// behind U+001E come header fields. Thread: any, one at a time.
class LiveAnswer
{
public:
    explicit LiveAnswer(bool hasMarks)
        : m_hasMarks(hasMarks)
    {
    }

    /// The whole characters that `bytes` completes; nothing when there are none.
    std::optional<AnswerPiece> feed(const QByteArray &bytes);
    /// The whole text, once everything was fed; nothing when it is not UTF-8.
    std::optional<QString> text() const;
    /// The value of a header field behind the text, as it was sent.
    QByteArray header(const QByteArray &name) const;

private:
    bool m_hasMarks;
    QByteArray m_text;
    QByteArray m_trailer;
    bool m_inTrailer = false;
    QStringDecoder m_decode = makeDecoder();

    static QStringDecoder makeDecoder();
};
