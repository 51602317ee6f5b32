// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "FlushRequest.h"

#include "APIConstants.h"
#include "GzipCompression.h"
#include "MetricPost/MetricPostLogger.h"
#include "RetryAfter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <condition_variable>

namespace metricpost
{

namespace
{

// The body as a decimal number. Some servers end it with a line break.
std::optional<qint64> integer(const QByteArray &answer)
{
    const QByteArray body = answer.trimmed();
    const char *begin = body.constData();
    const char *const end = begin + body.size();
    if (begin != end && *begin == '+' && end - begin > 1 && begin[1] != '-')
        ++begin;
    qint64 value = 0;
    const auto [rest, error] = std::from_chars(begin, end, value);
    return error == std::errc() && rest == end ? std::optional(value) : std::nullopt;
}

} // namespace

/// Passes what the transport's thread learns to the network queue.
struct FlushRequest::Answer {
    std::mutex mutex;
    std::condition_variable arrived;
    bool done = false;
    // A result, or the reason why there is none.
    std::optional<qint64> result;
    Reason reason;
    std::optional<URLResponse> response;

    void finish(std::optional<qint64> theResult, const Reason &theReason,
                const std::optional<URLResponse> &theResponse)
    {
        const std::lock_guard lock(mutex);
        if (done)
            return;
        done = true;
        result = theResult;
        reason = theReason;
        response = theResponse;
        arrived.notify_one();
    }
};

FlushRequest::FlushRequest(const QString &serverURL, const Surroundings &surroundings,
                           std::chrono::milliseconds answerLimit)
    : Network(serverURL, surroundings.transport)
    , m_now(surroundings.now)
    , m_random(surroundings.random)
    , m_answerLimit(answerLimit)
{
}

FlushRequest::~FlushRequest() = default;

bool FlushRequest::sendRequest(const QByteArray &requestData, FlushType type, bool useIP,
                               const Headers &headers, const QueryItems &queryItems,
                               bool useGzipCompression, Failures failures)
{
    Headers allHeaders = headers;
    allHeaders.insert(QStringLiteral("Content-Type"), QStringLiteral("application/json"));
    QByteArray body = requestData;
    if (useGzipCompression) {
        const auto compressed = gzipCompressed(requestData);
        if (const auto *bytes = std::get_if<QByteArray>(&compressed)) {
            body = *bytes;
            allHeaders.insert(QStringLiteral("Content-Encoding"), QStringLiteral("gzip"));
        } else {
            MetricPostLogger::error([&] {
                return QStringLiteral("Failed to compress data with gzip: ") +
                       std::get<GzipError>(compressed).message;
            });
        }
    }
    QueryItems allItems = queryItems;
    allItems.append({QStringLiteral("ip"), useIP ? QStringLiteral("1") : QStringLiteral("0")});

    const QString endpoint = rawValue(type);
    const auto answer = flushRequestHandler(
        buildResource<qint64>(endpoint, RequestMethod::post, body, allItems, allHeaders, integer));

    if (!answer->result) {
        constexpr int badRequest = 400;
        constexpr int contentTooLarge = 413;
        const int status = answer->response ? answer->response->statusCode : 0;
        m_wasRefused = (status == badRequest || status == contentTooLarge) &&
                       retryAfter(answer->response) == 0;
        if (failures == Failures::Count || !m_wasRefused)
            ++m_networkConsecutiveFailures;
        updateRetryDelay(answer->response);
        MetricPostLogger::warn([&] {
            return QStringLiteral("API request to ") + serverURL() + endpoint +
                   QStringLiteral(" has failed with reason ") + answer->reason.description();
        });
        return false;
    }
    m_wasRefused = false;
    m_networkConsecutiveFailures = 0;
    updateRetryDelay(answer->response);
    if (*answer->result == 0) {
        MetricPostLogger::info(
            [&] { return endpoint + QStringLiteral(" api rejected some items"); });
    }
    return true;
}

// Nothing changes the returned answer any more.
std::shared_ptr<FlushRequest::Answer>
FlushRequest::flushRequestHandler(const Resource<qint64> &resource)
{
    auto answer = std::make_shared<Answer>();
    {
        const std::lock_guard lock(m_mutex);
        if (m_cancelled) {
            answer->finish({}, {Reason::Kind::other, 0, QStringLiteral("cancelled")}, {});
            return answer;
        }
        m_awaited = answer;
    }
    const auto abandon = apiRequest<qint64>(
        serverURL(), resource,
        [answer](const Reason &reason, const std::optional<URLResponse> &response) {
            answer->finish({}, reason, response);
        },
        [answer](const qint64 &result, const URLResponse &response) {
            answer->finish(result, {}, response);
        });
    bool answered = false;
    {
        std::unique_lock lock(answer->mutex);
        answered = answer->arrived.wait_for(lock, m_answerLimit, [&] { return answer->done; });
    }
    if (!answered)
        answer->finish({}, {Reason::Kind::other, 0, QStringLiteral("no answer in time")}, {});
    // Without effect on a request that has ended; one that was given up must not succeed later.
    abandon();
    const std::lock_guard lock(m_mutex);
    m_awaited.reset();
    return answer;
}

double FlushRequest::retryAfter(const std::optional<URLResponse> &response) const
{
    const auto header = response ? response->header("Retry-After") : std::nullopt;
    return header ? retryAfterSeconds(*header, m_now()) : 0;
}

void FlushRequest::updateRetryDelay(const std::optional<URLResponse> &response)
{
    double retryTime = retryAfter(response);
    if (m_networkConsecutiveFailures >= APIConstants::failuresTillBackoff) {
        retryTime = std::max(retryTime,
                             retryBackOffTimeWithConsecutiveFailures(m_networkConsecutiveFailures));
    }
    m_networkRequestsAllowedAfterTime = m_now() + retryTime;
}

// Exponential, with a random part so that clients do not all come back at the same time.
double FlushRequest::retryBackOffTimeWithConsecutiveFailures(int failures) const
{
    constexpr quint32 spread = 30;
    constexpr double shortest = APIConstants::minRetryBackoff.count();
    constexpr double longest = APIConstants::maxRetryBackoff.count();
    const double time = std::pow(2, failures - 1) * shortest + double(m_random() % spread);
    return std::clamp(time, shortest, longest);
}

bool FlushRequest::requestNotAllowed() const
{
    return m_networkRequestsAllowedAfterTime > m_now();
}

bool FlushRequest::isCancelled() const
{
    const std::lock_guard lock(m_mutex);
    return m_cancelled;
}

void FlushRequest::cancel()
{
    const std::lock_guard lock(m_mutex);
    m_cancelled = true;
    if (m_awaited)
        m_awaited->finish({}, {Reason::Kind::other, 0, QStringLiteral("cancelled")}, {});
}

} // namespace metricpost
