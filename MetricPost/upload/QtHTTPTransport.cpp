// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "QtHTTPTransport.h"

#include "MetricPost/Version.h"

#include <QHash>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QThread>

#include <atomic>
#include <chrono>

namespace metricpost
{

namespace
{

constexpr std::chrono::milliseconds idleLimit = std::chrono::seconds(60);

QNetworkRequest networkRequest(const URLRequest &request)
{
    QNetworkRequest result(request.url);
    result.setTransferTimeout(int(idleLimit.count()));
    result.setMaximumRedirectsAllowed(0);
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        QNetworkRequest::ManualRedirectPolicy);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setRawHeader("User-Agent", QByteArray("MetricPost/") + libraryVersion);
    // Qt would send the user's language.
    result.setRawHeader("Accept-Language", "*");
    for (auto header = request.headers.cbegin(); header != request.headers.cend(); ++header)
        result.setRawHeader(header.key().toUtf8(), header.value().toUtf8());
    return result;
}

HTTPOutcome outcome(const QNetworkReply &reply, const QByteArray &body)
{
    const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    // Errors below this one lie in the connection; those above come with a whole response.
    const bool connectionFailed = reply.error() != QNetworkReply::NoError &&
                                  reply.error() < QNetworkReply::ContentAccessDenied;
    if (connectionFailed || !status.isValid())
        return {std::nullopt, {}, reply.errorString()};
    return {URLResponse{status.toInt(), reply.rawHeaderPairs()}, body, {}};
}

} // namespace

/// Lives on the transport's thread; only `post` may be called from others.
class QtHTTPTransport::Worker : public QObject
{
public:
    using Job = std::function<void(Worker &)>;

    void post(Job job)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_jobs.append(std::move(job));
        }
        QMetaObject::invokeMethod(this, &Worker::runJobs, Qt::QueuedConnection);
    }

    void start(quint64 number, const URLRequest &request, const Completion &completion)
    {
        if (!m_manager) {
            m_manager = new QNetworkAccessManager(this);
            m_manager->setAutoDeleteReplies(true);
        }
        QNetworkReply *const reply = m_manager->sendCustomRequest(
            networkRequest(request), request.method.toUpper(), request.body.value_or(QByteArray()));
        // Bounds the memory that an answer can take.
        reply->setReadBufferSize(bodyLimit + 1);
        m_replies.insert(number, reply);
        const auto body = std::make_shared<QByteArray>();
        connect(reply, &QNetworkReply::readyRead, this, [reply, body] {
            body->append(reply->readAll());
            if (body->size() > bodyLimit)
                reply->abort();
        });
        connect(reply, &QNetworkReply::finished, this, [this, number, reply, body, completion] {
            m_replies.remove(number);
            if (reply->isOpen())
                body->append(reply->readAll());
            completion(outcome(*reply, *body));
        });
    }

    void cancel(quint64 number)
    {
        if (QNetworkReply *const reply = m_replies.take(number)) {
            reply->disconnect(this);
            reply->abort();
        }
    }

    void end()
    {
        delete m_manager;
        m_manager = nullptr;
        const std::lock_guard lock(m_mutex);
        m_jobs.clear();
    }

private:
    void runJobs()
    {
        QList<Job> jobs;
        {
            const std::lock_guard lock(m_mutex);
            jobs.swap(m_jobs);
        }
        for (const Job &job : std::as_const(jobs))
            job(*this);
    }

    std::mutex m_mutex;
    QList<Job> m_jobs;
    QNetworkAccessManager *m_manager = nullptr;
    QHash<quint64, QNetworkReply *> m_replies;
};

QtHTTPTransport::QtHTTPTransport() = default;

QtHTTPTransport::~QtHTTPTransport()
{
    if (!m_thread)
        return;
    m_worker->post([](Worker &worker) {
        worker.end();
        worker.thread()->quit();
    });
    m_thread->wait();
}

HTTPTransport::Cancel QtHTTPTransport::start(const URLRequest &request, Completion completion)
{
    static std::atomic<quint64> lastNumber{0};
    const quint64 number = ++lastNumber;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_thread) {
            m_thread = std::make_unique<QThread>();
            m_thread->setObjectName(QStringLiteral("metricpost.http"));
            m_worker = std::make_shared<Worker>();
            m_worker->moveToThread(m_thread.get());
            m_thread->start();
        }
    }
    m_worker->post([number, request, completion = std::move(completion)](Worker &worker) {
        worker.start(number, request, completion);
    });
    return [number, worker = std::weak_ptr(m_worker)] {
        if (const auto alive = worker.lock())
            alive->post([number](Worker &w) { w.cancel(number); });
    };
}

} // namespace metricpost
