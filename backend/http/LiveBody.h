// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/http/HttpMessage.h"

#include <optional>

/// The body of an answer that is sent while it is still being written, in the chunks of
/// RFC 9112 §7.1. A client that asks for it ("Prefer: live") also gets marks in the body, which no
/// text has: U+0000 changes nothing and shows that work goes on, U+0018 withdraws everything before
/// it, and behind U+001E come header fields that were not known at the head. Other clients get text
/// alone. Thread: any, one at a time.
class LiveBody
{
public:
    static constexpr char padding = '\x00';
    static constexpr char withdrawal = '\x18';
    static constexpr char trailer = '\x1e';

    explicit LiveBody(bool hasMarks)
        : m_hasMarks(hasMarks)
    {
    }

    /// The bytes to send for a further piece of text; `startsOver` withdraws all pieces before it.
    QByteArray piece(const QByteArray &text, bool startsOver);
    /// The bytes to send when there has been nothing to send for a while; empty without marks.
    QByteArray pad() const;
    /// The bytes that complete the body as `whole`. Nothing when what was sent cannot be withdrawn
    /// any more: the connection must then be cut, so that no client takes the text for the answer.
    std::optional<QByteArray> complete(const QByteArray &whole, const HttpHeaders &headers);

private:
    static QByteArray chunk(const QByteArray &bytes);

    bool m_hasMarks;
    /// The text sent since the last withdrawal.
    QByteArray m_sent;
    /// What was sent is no beginning of the answer, and the client knows no withdrawal.
    bool m_isSpoilt = false;
};
