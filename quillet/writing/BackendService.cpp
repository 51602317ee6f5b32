// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/writing/BackendService.h"

#include <QCoreApplication>
#include <QFuture>
#include <QHostAddress>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QPointer>
#include <QPromise>
#include <QStringDecoder>
#include <QThreadPool>
#include <QUrl>

#include <chrono>
#include <memory>

using namespace std::chrono_literals;

namespace
{

constexpr auto TimeWithoutData = 60s;

/// The characters that a query item keeps as they are: RFC 3986's pchar, "/" and "?", less those
/// that separate items. The plus sign is among them.
constexpr char KeptInQueryItem[] = "!$'()*+,-./:?@_~";

QByteArray encodedQuery(const QMap<QString, QString> &parameters)
{
    QByteArrayList items;
    for (auto it = parameters.begin(); it != parameters.end(); ++it)
        items.append(QUrl::toPercentEncoding(it.key(), KeptInQueryItem) + '=' +
                     QUrl::toPercentEncoding(it.value(), KeptInQueryItem));
    return items.join('&');
}

/// `endpoint` with the parameters as its query, made on another thread: a text of many megabytes
/// takes longer than a window may stand still.
QFuture<QUrl> requestUrl(const QUrl &endpoint, const QMap<QString, QString> &parameters)
{
    auto promise = std::make_shared<QPromise<QUrl>>();
    QThreadPool::globalInstance()->start([promise, url = endpoint, parameters]() mutable {
        promise->start();
        url.setQuery(QString::fromLatin1(encodedQuery(parameters)), QUrl::StrictMode);
        promise->addResult(url);
        promise->finish();
    });
    return promise->future();
}

bool isLoopback(const QString &host)
{
    return host == QLatin1StringView("localhost") || QHostAddress(host).isLoopback();
}

/// The desktop's proxy settings, but nothing between us and our own machine.
class DesktopProxies : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        if (isLoopback(query.peerHostName()))
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        return systemProxyForQuery(query);
    }
};

/// Errors that only say which HTTP status came with the body.
bool isHttpStatus(QNetworkReply::NetworkError error)
{
    return error >= QNetworkReply::ContentAccessDenied &&
           error <= QNetworkReply::UnknownServerError &&
           error != QNetworkReply::ProtocolUnknownError &&
           error != QNetworkReply::ProtocolInvalidOperationError &&
           error != QNetworkReply::ProtocolFailure;
}

BackendService::Result resultOf(QNetworkReply &reply)
{
    // Nobody cancels a request but the clock.
    if (reply.error() == QNetworkReply::OperationCanceledError)
        return BackendFailure(QStringLiteral("The request timed out"));
    const bool answered = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
    if (reply.error() != QNetworkReply::NoError && !(answered && isHttpStatus(reply.error())))
        return BackendFailure(reply.errorString());
    if (!answered)
        return BackendFailure(BackendError::noData);
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                    QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decode(reply.readAll());
    if (decode.hasError())
        return BackendFailure(QStringLiteral("❌ Failed to decode data as UTF-8 text"));
    return text;
}

} // namespace

QString describe(const BackendFailure &failure)
{
    if (const auto *error = std::get_if<BackendError>(&failure))
        return *error == BackendError::invalidURL ? QStringLiteral("invalidURL")
                                                  : QStringLiteral("noData");
    return std::get<QString>(failure);
}

BackendService::BackendService(QObject *parent)
    : QObject(parent)
{
    m_session.setProxyFactory(new DesktopProxies);
}

BackendService &BackendService::shared()
{
    static QPointer<BackendService> instance;
    if (!instance)
        instance = new BackendService(QCoreApplication::instance());
    return *instance;
}

void BackendService::get(const QString &from, const QMap<QString, QString> &parameters,
                         Completion completion)
{
    const QUrl endpoint(from, QUrl::StrictMode);
    if (!endpoint.isValid()) {
        completion(BackendFailure(BackendError::invalidURL));
        return;
    }
    requestUrl(endpoint, parameters)
        .then(this, [this, completion = std::move(completion)](const QUrl &url) mutable {
            request(url, std::move(completion));
        });
}

void BackendService::request(const QUrl &url, Completion completion)
{
    QNetworkRequest request(url);
    request.setTransferTimeout(std::chrono::milliseconds(TimeWithoutData).count());
    QNetworkReply *reply = m_session.get(request);
    connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received) {
        if (received > MaximumAnswerSize) {
            reply->setProperty("tooLarge", true);
            reply->abort();
        }
    });
    connect(reply, &QNetworkReply::finished, this, [reply, completion = std::move(completion)] {
        reply->deleteLater();
        if (reply->property("tooLarge").toBool())
            completion(BackendFailure(QStringLiteral("The answer is larger than %1 MB")
                                          .arg(MaximumAnswerSize / (1024 * 1024))));
        else
            completion(resultOf(*reply));
    });
}
