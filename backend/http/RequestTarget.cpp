// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/RequestTarget.h"

#include <QStringDecoder>

namespace
{

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

std::optional<QString> decoded(QByteArrayView encoded)
{
    QByteArray bytes;
    bytes.reserve(encoded.size());
    for (qsizetype i = 0; i < encoded.size(); ++i) {
        if (encoded[i] != '%') {
            bytes += encoded[i];
            continue;
        }
        const int high = i + 2 < encoded.size() ? hexDigit(encoded[i + 1]) : -1;
        const int low = i + 2 < encoded.size() ? hexDigit(encoded[i + 2]) : -1;
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes += char(high * 16 + low);
        i += 2;
    }
    // Stateless, so that a leading byte order mark stays part of the text.
    QStringDecoder utf8(QStringDecoder::Utf8,
                        QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    const QString text = utf8(bytes);
    if (utf8.hasError())
        return std::nullopt;
    return text;
}

} // namespace

std::optional<RequestTarget> parseRequestTarget(const QByteArray &target)
{
    RequestTarget result;
    QByteArrayView whole(target);
    if (!target.startsWith('/') && target != "*") {
        constexpr QByteArrayView scheme = "http://";
        if (whole.first(std::min(whole.size(), scheme.size())).compare(scheme, Qt::CaseInsensitive))
            return std::nullopt;
        whole = whole.sliced(scheme.size());
        auto end = qsizetype(0);
        while (end < whole.size() && whole[end] != '/' && whole[end] != '?')
            ++end;
        result.authority = whole.first(end).toByteArray();
        whole = whole.sliced(end);
    }
    const auto question = whole.indexOf('?');
    const auto path = decoded(question < 0 ? whole : whole.first(question));
    if (!path)
        return std::nullopt;
    result.path = path->isEmpty() ? QStringLiteral("/") : *path;
    qsizetype start = question < 0 ? whole.size() : question + 1;
    while (start < whole.size()) {
        auto end = whole.indexOf('&', start);
        if (end < 0)
            end = whole.size();
        const auto item = whole.sliced(start, end - start);
        start = end + 1;
        if (item.isEmpty())
            continue;
        const auto equals = item.indexOf('=');
        const auto name = decoded(equals < 0 ? item : item.first(equals));
        const auto value = decoded(equals < 0 ? QByteArrayView() : item.sliced(equals + 1));
        if (!name || !value)
            return std::nullopt;
        if (!result.items.contains(*name))
            result.items.insert(*name, *value);
    }
    return result;
}
