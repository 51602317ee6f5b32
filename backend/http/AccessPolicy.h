// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/http/HttpHandler.h"

#include <QHostAddress>
#include <QStringList>
#include <optional>

/// Who may use the server. Keeps out other users of the machine (by the secret),
/// web pages in the user's own browser (by the header fields that only a browser
/// sends for a page) and pages that reach it through a host name of their own
/// ("DNS rebinding", by the Host field). Thread: any; it never changes.
class AccessPolicy : public HttpAdmission
{
public:
    /// `secret` is the password of HTTP Basic (RFC 7617), in UTF-8; empty: none
    /// is asked for. `hostNames` are accepted in the Host field in addition to
    /// "localhost", loopback addresses and `address` itself.
    AccessPolicy(const QHostAddress &address, const QByteArray &secret, QStringList hostNames = {});

    /// The user name of the credentials.
    static constexpr const char *userName = "quillet";

    /// A path that begins with this and the secret carries the credentials itself, so that they
    /// come before a text of many kilobytes: "/with/SECRET/generate".
    static constexpr const char *pathPrefix = "/with/";

    /// The answer to a request that may not go on. Takes the secret out of the target of one that
    /// may.
    std::optional<HttpResponse> refusal(HttpRequest &request) const;

    bool asksForSecret() const { return !m_credentials.isEmpty(); }
    bool admitsBeginning(QByteArrayView bytes) const override;
    bool admits(const HttpRequest &request) const override;

private:
    bool accepts(const QByteArray &host) const;
    bool authorized(const QByteArray &authorization) const;
    bool hasPathSecret(QByteArrayView target) const;

    QHostAddress m_address;
    QByteArray m_credentials;
    /// What a target that carries the secret begins with; empty without a secret.
    QByteArray m_path;
    QStringList m_hostNames;
};
