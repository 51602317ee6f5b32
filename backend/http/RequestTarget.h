// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>

/// A request target in origin form or absolute form (RFC 9112 §3.2), taken apart.
struct RequestTarget {
    /// Host and port of an absolute form, undecoded; they count instead of the Host field.
    std::optional<QByteArray> authority;
    QString path;
    /// Names and values after percent-decoding (RFC 3986 §2.1) and nothing else:
    /// a plus sign is a plus sign. The first of several equal names holds.
    QHash<QString, QString> items;
};

/// Nothing for an absolute form that is not http, and when a path or an item is not UTF-8 or has a
/// broken percent escape.
std::optional<RequestTarget> parseRequestTarget(const QByteArray &target);
