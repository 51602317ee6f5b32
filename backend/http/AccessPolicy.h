// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/http/HttpMessage.h"

#include <QHostAddress>
#include <QStringList>
#include <optional>

/// Who may use the server. Keeps out other users of the machine (by the secret),
/// web pages in the user's own browser (by the header fields that only a browser
/// sends for a page) and pages that reach it through a host name of their own
/// ("DNS rebinding", by the Host field). Thread: any; it never changes.
class AccessPolicy
{
public:
    /// `secret` is the password of HTTP Basic (RFC 7617), in UTF-8; empty: none
    /// is asked for. `hostNames` are accepted in the Host field in addition to
    /// "localhost", loopback addresses and `address` itself.
    AccessPolicy(const QHostAddress &address, QByteArray secret, QStringList hostNames = {});

    /// The user name of the credentials.
    static constexpr const char *userName = "quillet";

    /// The answer to a request that may not go on.
    std::optional<HttpResponse> refusal(const HttpRequest &request) const;

private:
    bool accepts(const QByteArray &host) const;
    bool authorized(const QByteArray &authorization) const;

    QHostAddress m_address;
    QByteArray m_credentials;
    QStringList m_hostNames;
};
