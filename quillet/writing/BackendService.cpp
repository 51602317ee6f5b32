// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/writing/BackendService.h"

#include <QCoreApplication>
#include <QFuture>
#include <QHostAddress>
#include <QMetaEnum>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QPointer>
#include <QPromise>
#include <QThreadPool>
#include <QUrl>

#include <memory>
#include <optional>

namespace
{

/// The characters that a query item keeps as they are: RFC 3986's pchar, "/" and "?", less those
/// that separate items. The plus sign is among them.
constexpr char keptInQueryItem[] = "!$'()*+,-./:?@_~";

QByteArray encodedQuery(const QMap<QString, QString> &parameters)
{
    QByteArrayList items;
    for (auto it = parameters.begin(); it != parameters.end(); ++it)
        items.append(QUrl::toPercentEncoding(it.key(), keptInQueryItem) + '=' +
                     QUrl::toPercentEncoding(it.value(), keptInQueryItem));
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

/// The error in words. The system's own description has the URL in it, and with it the text.
QString sentenceOf(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::OperationCanceledError: // only the clock cancels
    case QNetworkReply::TimeoutError:
        return QStringLiteral("The request timed out");
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::UnknownNetworkError:
        return QStringLiteral("The writing backend cannot be reached");
    case QNetworkReply::RemoteHostClosedError:
        return QStringLiteral("The connection to the writing backend broke off");
    case QNetworkReply::SslHandshakeFailedError:
        return QStringLiteral("A secure connection to the writing backend could not be made");
    case QNetworkReply::InsecureRedirectError:
        return QStringLiteral("The writing backend has moved to another address");
    default:
        return QStringLiteral("The request failed (%1)")
            .arg(QLatin1StringView(
                QMetaEnum::fromType<QNetworkReply::NetworkError>().valueToKey(error)));
    }
}

} // namespace

QString describe(const BackendFailure &failure)
{
    if (const auto *error = std::get_if<BackendError>(&failure))
        return *error == BackendError::invalidURL ? QStringLiteral("invalidURL")
                                                  : QStringLiteral("noData");
    return std::get<QString>(failure);
}

/// One request from its URL to its completion; destroys itself afterwards.
class BackendService::Transfer : public BackendWork
{
public:
    Transfer(BackendService *service, Beginning beginning, AnswerCompletion completion)
        : BackendWork(service)
        , m_service(service)
        , m_beginning(std::move(beginning))
        , m_completion(std::move(completion))
    {
    }

    ~Transfer() override { drop(); }

    void end() override
    {
        m_ended = true;
        drop();
        deleteLater();
    }

    void start(const QUrl &endpoint, const QMap<QString, QString> &parameters)
    {
        requestUrl(endpoint, parameters).then(this, [this](const QUrl &url) {
            if (!m_ended)
                send(url);
        });
    }

    /// Fails later, from the event loop.
    void fail(const BackendFailure &failure)
    {
        QMetaObject::invokeMethod(
            this,
            [this, failure] {
                call([&] { m_completion(failure); });
                deleteLater();
            },
            Qt::QueuedConnection);
    }

private:
    void drop()
    {
        if (!m_reply)
            return;
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }

    void send(const QUrl &url)
    {
        QNetworkRequest request(url);
        request.setTransferTimeout(int(m_service->m_timeWithoutData.count()));
        if (m_beginning) {
            request.setRawHeader("Prefer", "live");
            // Compression would hold pieces back.
            request.setRawHeader("Accept-Encoding", "identity");
        }
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                             QNetworkRequest::SameOriginRedirectPolicy);
        m_reply = m_service->m_session.get(request);
        connect(m_reply, &QNetworkReply::readyRead, this, [this] { read(); });
        connect(m_reply, &QNetworkReply::finished, this, [this] { conclude(); });
    }

    void read()
    {
        if (!m_answer)
            m_answer.emplace(m_beginning && m_reply->rawHeader("Preference-Applied") == "live");
        const QByteArray bytes = m_reply->isOpen() ? m_reply->readAll() : QByteArray();
        m_size += bytes.size();
        if (m_size > maxAnswerSize) {
            m_reply->abort(); // concludes
            return;
        }
        if (const auto piece = m_answer->feed(bytes); piece && m_beginning)
            call([&] { m_beginning(*piece); });
    }

    void conclude()
    {
        if (m_size <= maxAnswerSize)
            read();
        m_reply->deleteLater();
        call([this] { m_completion(result()); });
        deleteLater();
    }

    AnswerResult result() const
    {
        if (m_size > maxAnswerSize) {
            return BackendFailure(QStringLiteral("The answer is larger than %1 MB")
                                      .arg(maxAnswerSize / (1024 * 1024)));
        }
        const auto error = m_reply->error();
        const bool answered =
            m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
        if (error != QNetworkReply::NoError && !(answered && isHttpStatus(error)))
            return BackendFailure(sentenceOf(error));
        if (!answered)
            return BackendFailure(BackendError::noData);
        const auto text = m_answer->text();
        if (!text)
            return BackendFailure(QStringLiteral("❌ Failed to decode data as UTF-8 text"));
        return BackendAnswer{*text, said("Quillet-Writer"), said("Quillet-Remark")};
    }

    /// What stands in a header field at the head or behind the text.
    QString said(const QByteArray &name) const
    {
        const QByteArray late = m_answer->header(name);
        return QUrl::fromPercentEncoding(late.isEmpty() ? m_reply->rawHeader(name) : late);
    }

    /// Calls back unless the request was ended, which a call before may have done.
    template <class Call> void call(Call &&function)
    {
        if (!m_ended)
            function();
    }

    BackendService *m_service;
    Beginning m_beginning;
    AnswerCompletion m_completion;
    QPointer<QNetworkReply> m_reply;
    std::optional<LiveAnswer> m_answer;
    qint64 m_size = 0;
    bool m_ended = false;
};

BackendService::BackendService(QObject *parent, std::chrono::milliseconds timeWithoutData)
    : QObject(parent)
    , m_timeWithoutData(timeWithoutData)
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
    auto *transfer =
        new Transfer(this, {}, [completion = std::move(completion)](const AnswerResult &result) {
            if (const auto *answer = std::get_if<BackendAnswer>(&result))
                completion(answer->text);
            else
                completion(std::get<BackendFailure>(result));
        });
    transfer->start(endpoint, parameters);
}

std::unique_ptr<BackendRequest>
BackendService::getAsItComes(const QString &from, const QMap<QString, QString> &parameters,
                             Beginning beginning, AnswerCompletion completion)
{
    const QUrl endpoint(from, QUrl::StrictMode);
    auto *transfer = new Transfer(this, std::move(beginning), std::move(completion));
    auto request = std::make_unique<BackendRequest>(transfer);
    if (endpoint.isValid())
        transfer->start(endpoint, parameters);
    else
        transfer->fail(BackendError::invalidURL);
    return request;
}
