// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "HTTPTransport.h"
#include "MetricPost/ProxyServerConfig.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace metricpost
{

enum class RequestMethod { get, post };

/// "get" or "post". The transport writes the method in capitals.
QByteArray rawValue(RequestMethod method);

/// A request to a server and the parser of its answer.
template <class A> struct Resource {
    QString path;
    RequestMethod method = RequestMethod::get;
    std::optional<QByteArray> requestBody;
    QueryItems queryItems;
    Headers headers;
    std::function<std::optional<A>(const QByteArray &)> parse;
};

/// Why a request gave no result.
struct Reason {
    enum class Kind { parseError, noData, notOKStatusCode, other };

    Kind kind = Kind::other;
    int statusCode = 0;
    QString error;

    QString description() const;
};

struct BasePath {
    /// The base with the path appended to its own and exactly these query items, every "+" in
    /// them as "%2B". Nothing when the base is no http or https address.
    static std::optional<QUrl> buildURL(const QString &base, const QString &path,
                                        const QueryItems &queryItems);
};

/// Builds requests and runs them. Any thread.
class Network
{
public:
    Network(const QString &serverURL, std::shared_ptr<HTTPTransport> transport);

    QString serverURL() const;
    void setServerURL(const QString &url);

    template <class A>
    static Resource<A> buildResource(const QString &path, RequestMethod method,
                                     const std::optional<QByteArray> &requestBody,
                                     const QueryItems &queryItems, const Headers &headers,
                                     std::function<std::optional<A>(const QByteArray &)> parse)
    {
        return {path, method, requestBody, queryItems, headers, std::move(parse)};
    }

    template <class A>
    static std::optional<URLRequest> buildURLRequest(const QString &base,
                                                     const Resource<A> &resource)
    {
        return buildURLRequest(BasePath::buildURL(base, resource.path, resource.queryItems),
                               resource.method, resource.requestBody, resource.headers);
    }

    /// Runs the request; exactly one of the two functions is called, on any thread, unless the
    /// returned function abandons the request before. Only status 200 is a success.
    template <class A>
    HTTPTransport::Cancel
    apiRequest(const QString &base, const Resource<A> &resource,
               std::function<void(const Reason &, const std::optional<URLResponse> &)> failure,
               std::function<void(const A &, const URLResponse &)> success)
    {
        const auto request = buildURLRequest(base, resource);
        if (!request) {
            failure({Reason::Kind::other, 0, QStringLiteral("unusable address")}, std::nullopt);
            return [] {};
        }
        return m_transport->start(*request, [parse = resource.parse, failure = std::move(failure),
                                             success = std::move(success)](const HTTPOutcome &o) {
            if (const auto reason = reasonOf(o)) {
                failure(*reason, o.response);
            } else if (const auto result = parse(o.body)) {
                success(*result, *o.response);
            } else {
                failure({Reason::Kind::parseError, 0, {}}, o.response);
            }
        });
    }

private:
    static std::optional<URLRequest> buildURLRequest(const std::optional<QUrl> &url,
                                                     RequestMethod method,
                                                     const std::optional<QByteArray> &body,
                                                     const Headers &headers);
    static std::optional<Reason> reasonOf(const HTTPOutcome &outcome);

    mutable std::mutex m_mutex;
    QString m_serverURL;
    const std::shared_ptr<HTTPTransport> m_transport;
};

} // namespace metricpost
