// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "Network.h"

#include "MetricPost/MetricPostLogger.h"

namespace metricpost
{

QByteArray rawValue(RequestMethod method)
{
    return method == RequestMethod::get ? QByteArrayLiteral("get") : QByteArrayLiteral("post");
}

QString Reason::description() const
{
    switch (kind) {
    case Kind::parseError:
        return QStringLiteral("parseError");
    case Kind::noData:
        return QStringLiteral("noData");
    case Kind::notOKStatusCode:
        return QStringLiteral("notOKStatusCode(statusCode: ") + QString::number(statusCode) + u')';
    case Kind::other:
        break;
    }
    return QStringLiteral("other(") + error + u')';
}

std::optional<QUrl> BasePath::buildURL(const QString &base, const QString &path,
                                       const QueryItems &queryItems)
{
    QUrl url(base, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty() ||
        (url.scheme() != u"http" && url.scheme() != u"https")) {
        return std::nullopt;
    }
    url.setPath(url.path(QUrl::FullyEncoded) + path, QUrl::TolerantMode);

    // A server reads a literal plus in a query as a blank; percent-encoding leaves none.
    QByteArrayList items;
    for (const auto &[name, value] : queryItems)
        items.append(QUrl::toPercentEncoding(name) + '=' + QUrl::toPercentEncoding(value));
    if (items.isEmpty())
        url.setQuery(QString());
    else
        url.setQuery(QString::fromLatin1(items.join('&')), QUrl::StrictMode);
    return url;
}

Network::Network(const QString &serverURL, std::shared_ptr<HTTPTransport> transport)
    : m_serverURL(serverURL)
    , m_transport(std::move(transport))
{
}

QString Network::serverURL() const
{
    const std::lock_guard lock(m_mutex);
    return m_serverURL;
}

void Network::setServerURL(const QString &url)
{
    const std::lock_guard lock(m_mutex);
    m_serverURL = url;
}

std::optional<URLRequest> Network::buildURLRequest(const std::optional<QUrl> &url,
                                                   RequestMethod method,
                                                   const std::optional<QByteArray> &body,
                                                   const Headers &headers)
{
    if (!url)
        return std::nullopt;
    MetricPostLogger::debug([] { return QStringLiteral("Fetching URL"); });
    MetricPostLogger::debug([&] { return url->toString(QUrl::FullyEncoded); });
    return URLRequest{*url, rawValue(method), body, headers};
}

std::optional<Reason> Network::reasonOf(const HTTPOutcome &outcome)
{
    if (!outcome.response)
        return Reason{Reason::Kind::other, 0, outcome.error};
    if (outcome.response->statusCode != 200)
        return Reason{Reason::Kind::notOKStatusCode, outcome.response->statusCode, {}};
    if (outcome.body.isEmpty())
        return Reason{Reason::Kind::noData, 0, {}};
    return std::nullopt;
}

} // namespace metricpost
