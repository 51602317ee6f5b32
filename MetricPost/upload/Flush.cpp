// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "Flush.h"

#include "APIConstants.h"
#include "JSONHandler.h"
#include "MetricPost/MetricPostLogger.h"

#include <algorithm>

namespace metricpost
{

Flush::Flush(const QString &serverURL, bool useGzipCompression,
             const FlushRequest::Surroundings &surroundings)
    : m_useGzipCompression(useGzipCompression)
    , m_flushRequest(serverURL, surroundings)
    , m_flushBatchSize(APIConstants::maxBatchSize)
    , m_serverURL(serverURL)
    , m_timer([this] { flushSelector(); })
{
}

void Flush::startFlushTimer()
{
    if (const double interval = flushInterval(); interval > 0)
        m_timer.start(interval);
    else
        m_timer.stop();
}

void Flush::stopFlushTimer()
{
    m_timer.stop();
}

void Flush::flushSelector()
{
    if (m_delegate)
        m_delegate->flush(false, {});
}

void Flush::flushQueue(const QList<Properties> &queue, FlushType type, const Headers &headers,
                       const QueryItems &queryItems)
{
    if (m_flushRequest.requestNotAllowed())
        return;
    flushQueueInBatches(queue, type, headers, queryItems);
}

void Flush::flushQueueInBatches(QList<Properties> queue, FlushType type, const Headers &headers,
                                const QueryItems &queryItems)
{
    while (!queue.isEmpty()) {
        const int batchSize = int(std::min<qsizetype>(queue.size(), flushBatchSize()));
        ValueList batch;
        QList<qint32> ids;
        for (const Properties &record : queue.first(batchSize)) {
            batch.append(record);
            const MetricPostType identity = record.value(QStringLiteral("id"));
            if (const qint64 *id = identity.get<qint64>())
                ids.append(qint32(*id));
        }
        MetricPostLogger::debug([] { return QStringLiteral("Sending batch of data"); });
        MetricPostLogger::debug([&] { return MetricPostType(batch).description(); });

        // A batch that cannot be encoded stays, and must not keep those behind it from leaving.
        if (const auto requestData = JSONHandler::encodeAPIData(batch)) {
            const bool success =
                m_flushRequest.sendRequest(*requestData, type, useIPAddressForGeoLocation(),
                                           headers, queryItems, m_useGzipCompression);
            if (!success)
                return;
            if (m_delegate)
                m_delegate->flushSuccess(type, ids);
        }
        queue = removeProcessedBatch(batchSize, std::move(queue));
    }
}

// Taken by value: removing the head of a list that nobody shares costs nothing per element left.
QList<Properties> Flush::removeProcessedBatch(int batchSize, QList<Properties> queue)
{
    if (batchSize > queue.size())
        return {};
    queue.remove(0, batchSize);
    return queue;
}

double Flush::flushInterval() const
{
    return m_flushRequestReadWriteLock.read([this] { return m_flushInterval; });
}

void Flush::setFlushInterval(double interval)
{
    setInitialFlushInterval(interval);
    if (m_delegate)
        m_delegate->flush(false, {});
    startFlushTimer();
}

void Flush::setInitialFlushInterval(double interval)
{
    m_flushRequestReadWriteLock.write([&] { m_flushInterval = interval; });
}

int Flush::flushBatchSize() const
{
    return m_flushRequestReadWriteLock.read([this] { return m_flushBatchSize; });
}

void Flush::setFlushBatchSize(int size)
{
    // A batch of none would never empty a queue.
    m_flushRequestReadWriteLock.write([&] { m_flushBatchSize = std::max(size, 1); });
}

QString Flush::serverURL() const
{
    return m_flushRequestReadWriteLock.read([this] { return m_serverURL; });
}

void Flush::setServerURL(const QString &url)
{
    m_flushRequestReadWriteLock.write([&] {
        m_serverURL = url;
        m_flushRequest.setServerURL(url);
    });
}

} // namespace metricpost
