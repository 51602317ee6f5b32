// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/LiveBody.h"

QByteArray LiveBody::piece(const QByteArray &text, bool startsOver)
{
    QByteArray bytes = text;
    if (startsOver && !m_sent.isEmpty()) {
        m_sent.clear();
        m_isSpoilt = !m_hasMarks;
        bytes.prepend(withdrawal);
    }
    if (m_isSpoilt)
        return {};
    m_sent += text;
    return chunk(bytes);
}

QByteArray LiveBody::pad() const
{
    return m_hasMarks ? chunk(QByteArray(1, padding)) : QByteArray();
}

std::optional<QByteArray> LiveBody::complete(const QByteArray &whole, const HttpHeaders &headers)
{
    const bool continues = whole.startsWith(m_sent);
    if (m_isSpoilt || (!continues && !m_hasMarks))
        return std::nullopt;
    QByteArray rest = continues ? whole.mid(m_sent.size()) : withdrawal + whole;
    if (m_hasMarks && !headers.isEmpty()) {
        rest += trailer;
        for (const auto &[name, value] : headers)
            rest += name + ": " + value + "\r\n";
    }
    return chunk(rest) + "0\r\n\r\n";
}

QByteArray LiveBody::chunk(const QByteArray &bytes)
{
    // A chunk of no bytes would end the body.
    return bytes.isEmpty() ? QByteArray()
                           : QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n";
}
