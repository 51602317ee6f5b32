// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/http/AccessPolicy.h"

#include <QUrl>

namespace
{

/// Takes as long for a wrong guess as for a nearly right one.
bool equalInConstantTime(QByteArrayView a, QByteArrayView b)
{
    if (a.size() != b.size())
        return false;
    unsigned difference = 0;
    for (qsizetype i = 0; i < a.size(); ++i)
        difference |= unsigned(uchar(a[i]) ^ uchar(b[i]));
    return difference == 0;
}

} // namespace

AccessPolicy::AccessPolicy(const QHostAddress &address, const QByteArray &secret,
                           QStringList hostNames)
    : m_address(address)
    , m_credentials(secret.isEmpty() ? QByteArray() : QByteArray(userName) + ':' + secret)
    , m_path(secret.isEmpty()
                 ? QByteArray()
                 : pathPrefix + QUrl::toPercentEncoding(QString::fromUtf8(secret)) + '/')
    , m_hostNames(std::move(hostNames))
{
}

std::optional<HttpResponse> AccessPolicy::refusal(HttpRequest &request) const
{
    if (request.hostCount != 1)
        return HttpResponse{400, "The request must have one Host field."};
    if (!accepts(request.host))
        return HttpResponse{421, "This server does not answer for that host name."};
    const bool fromPage = !request.origin.isEmpty() || !request.referer.isEmpty() ||
                          (!request.fetchSite.isEmpty() && request.fetchSite != "none");
    if (fromPage)
        return HttpResponse{403, "Web pages may not use this server."};
    if (!m_path.isEmpty() && hasPathSecret(request.target)) {
        // The slash at the end of the prefix begins the path.
        request.target.remove(0, m_path.size() - 1);
    } else if (!authorized(request.authorization)) {
        return HttpResponse{401,
                            "This server asks for the secret of Quillet's present launch.",
                            {{"WWW-Authenticate", R"(Basic realm="Quillet", charset="UTF-8")"}}};
    }
    return std::nullopt;
}

bool AccessPolicy::admitsBeginning(QByteArrayView bytes) const
{
    if (m_path.isEmpty())
        return true;
    const auto space = bytes.indexOf(' ');
    return space >= 0 && hasPathSecret(bytes.sliced(space + 1));
}

bool AccessPolicy::admits(const HttpRequest &request) const
{
    return hasPathSecret(request.target) || authorized(request.authorization);
}

bool AccessPolicy::hasPathSecret(QByteArrayView target) const
{
    return target.size() >= m_path.size() &&
           equalInConstantTime(target.first(m_path.size()), m_path);
}

bool AccessPolicy::accepts(const QByteArray &host) const
{
    const QUrl url(QStringLiteral("http://") + QString::fromLatin1(host), QUrl::StrictMode);
    if (!url.isValid() || !url.path().isEmpty() || !url.userInfo().isEmpty() || url.hasQuery())
        return false;
    const QString name = url.host();
    if (name == u"localhost" || m_hostNames.contains(name, Qt::CaseInsensitive))
        return true;
    const QHostAddress literal(name);
    if (literal.isNull())
        return false;
    const bool anyAddress = m_address == QHostAddress(QHostAddress::Any) ||
                            m_address == QHostAddress(QHostAddress::AnyIPv4) ||
                            m_address == QHostAddress(QHostAddress::AnyIPv6);
    return literal.isLoopback() || anyAddress || literal == m_address;
}

bool AccessPolicy::authorized(const QByteArray &authorization) const
{
    if (m_credentials.isEmpty())
        return true;
    const auto space = authorization.indexOf(' ');
    if (space < 0 || authorization.first(space).compare("Basic", Qt::CaseInsensitive) != 0)
        return false;
    const auto given = QByteArray::fromBase64(authorization.mid(space + 1).trimmed());
    return equalInConstantTime(given, m_credentials);
}
