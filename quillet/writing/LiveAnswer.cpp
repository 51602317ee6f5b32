// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/writing/LiveAnswer.h"

namespace
{
constexpr char padding = '\x00';
constexpr char withdrawal = '\x18';
constexpr char trailer = '\x1e';
} // namespace

QStringDecoder LiveAnswer::makeDecoder()
{
    // A byte order mark is a part of the text.
    return QStringDecoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
}

std::optional<AnswerPiece> LiveAnswer::feed(const QByteArray &bytes)
{
    AnswerPiece piece;
    QByteArray text;
    for (const char c : bytes) {
        if (!m_hasMarks || (!m_inTrailer && c != padding && c != withdrawal && c != trailer)) {
            text += c;
        } else if (m_inTrailer) {
            m_trailer += c;
        } else if (c == trailer) {
            m_inTrailer = true;
        } else if (c == withdrawal) {
            m_text.clear();
            text.clear();
            m_decode = makeDecoder();
            piece.startsOver = true;
        }
    }
    m_text += text;
    piece.text = m_decode(text);
    if (piece.text.isEmpty() && !piece.startsOver)
        return std::nullopt;
    return piece;
}

std::optional<QString> LiveAnswer::text() const
{
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                    QStringDecoder::Flag::ConvertInitialBom);
    const QString whole = decode(m_text);
    return decode.hasError() ? std::nullopt : std::optional(whole);
}

QByteArray LiveAnswer::header(const QByteArray &name) const
{
    for (const QByteArray &line : m_trailer.split('\n')) {
        const auto colon = line.indexOf(':');
        if (colon > 0 && line.first(colon).compare(name, Qt::CaseInsensitive) == 0)
            return line.sliced(colon + 1).trimmed();
    }
    return {};
}
