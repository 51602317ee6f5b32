// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace metricpost
{

struct URLRequest {
    QUrl url;
    /// In either case; the transport writes it as RFC 9110 does, in capitals.
    QByteArray method;
    std::optional<QByteArray> body;
    QMap<QString, QString> headers;
};

struct URLResponse {
    int statusCode = 0;
    QList<QPair<QByteArray, QByteArray>> headers;

    /// The first header of that name, whatever its case.
    std::optional<QByteArray> header(const QByteArray &name) const
    {
        for (const auto &[headerName, value] : headers) {
            if (headerName.compare(name, Qt::CaseInsensitive) == 0)
                return value;
        }
        return std::nullopt;
    }
};

/// What became of a request: a response with its body, or the error that kept it from coming.
struct HTTPOutcome {
    std::optional<URLResponse> response;
    QByteArray body;
    QString error;
};

/// Carries requests to a server. Any thread.
class HTTPTransport
{
public:
    using Completion = std::function<void(const HTTPOutcome &)>;
    using Cancel = std::function<void()>;

    virtual ~HTTPTransport() = default;

    /// Starts the request and returns at once. The completion runs once, on any thread, unless
    /// the returned function abandons the request before.
    virtual Cancel start(const URLRequest &request, Completion completion) = 0;
};

} // namespace metricpost
