// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "FlushType.h"
#include "Network.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace metricpost
{

/// Sends one batch at a time and keeps the back-off state.
///
/// All but `cancel` and the server's address belong to the instance's network queue, which
/// `sendRequest` blocks.
class FlushRequest : public Network
{
public:
    static constexpr std::chrono::milliseconds standardAnswerLimit = std::chrono::seconds(120);

    /// What a request depends on. The functions may be called from any thread.
    struct Surroundings {
        std::shared_ptr<HTTPTransport> transport;
        /// Seconds since 1970.
        std::function<double()> now;
        /// 32 random bits.
        std::function<quint32()> random;
    };

    FlushRequest(const QString &serverURL, const Surroundings &surroundings,
                 std::chrono::milliseconds answerLimit = standardAnswerLimit);
    ~FlushRequest();

    /// Whether a request counts against the service when it fails.
    enum class Failures {
        Count,
        /// The request is a part of a batch whose refusal has been counted.
        CountedBefore,
    };

    /// Sends the batch and waits for the answer, at most the answer limit. True when the batch
    /// was delivered and may be deleted.
    bool sendRequest(const QByteArray &requestData, FlushType type, bool useIP,
                     const Headers &headers, const QueryItems &queryItems, bool useGzipCompression,
                     Failures failures = Failures::Count);

    /// Whether the last request was answered, but refused for what it contains (400, 413), and the
    /// service does not ask for a pause.
    bool wasRefused() const { return m_wasRefused; }

    /// Whether a back-off or the service's "Retry-After" still holds.
    bool requestNotAllowed() const;

    /// Ends the wait for an answer, now and from now on: the program is ending. Any thread.
    void cancel();
    bool isCancelled() const;

    /// Seconds since 1970.
    double networkRequestsAllowedAfterTime() const { return m_networkRequestsAllowedAfterTime; }
    int networkConsecutiveFailures() const { return m_networkConsecutiveFailures; }

private:
    struct Answer;

    std::shared_ptr<Answer> flushRequestHandler(const Resource<qint64> &resource);
    double retryAfter(const std::optional<URLResponse> &response) const;
    void updateRetryDelay(const std::optional<URLResponse> &response);
    double retryBackOffTimeWithConsecutiveFailures(int failures) const;

    const std::function<double()> m_now;
    const std::function<quint32()> m_random;
    const std::chrono::milliseconds m_answerLimit;
    double m_networkRequestsAllowedAfterTime = 0;
    int m_networkConsecutiveFailures = 0;
    bool m_wasRefused = false;

    mutable std::mutex m_mutex;
    bool m_cancelled = false;
    std::shared_ptr<Answer> m_awaited;
};

} // namespace metricpost
