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
    if (const Seconds interval = flushInterval(); interval > Seconds(0))
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

bool Flush::flushQueue(const QList<Properties> &queue, FlushType type, const Headers &headers,
                       const QueryItems &queryItems)
{
    if (m_flushRequest.requestNotAllowed())
        return false;
    return flushQueueInBatches(queue, type, headers, queryItems);
}

/// One batch and what became of it so far.
struct Flush::Batch {
    FlushType type;
    const Headers &headers;
    const QueryItems &queryItems;
    bool wasRefused = false;
    bool hasDelivered = false;
    QList<qint32> refusedIds;
};

bool Flush::flushQueueInBatches(QList<Properties> queue, FlushType type, const Headers &headers,
                                const QueryItems &queryItems)
{
    while (!queue.isEmpty()) {
        const int batchSize = int(std::min<qsizetype>(queue.size(), flushBatchSize()));
        Batch batch{type, headers, queryItems, false, false, {}};
        bool isDone = sendPart(batch, queue.first(batchSize));
        if (!batch.refusedIds.isEmpty()) {
            if (batch.hasDelivered && m_delegate)
                m_delegate->flushRefused(type, batch.refusedIds);
            isDone = isDone && batch.hasDelivered;
        }
        if (!isDone)
            return false;
        queue = removeProcessedBatch(batchSize, std::move(queue));
    }
    return true;
}

// Sends records of the batch in one request, or in several when the service refuses that. False
// when the rest of the batch must not be sent now.
bool Flush::sendPart(Batch &batch, const QList<Properties> &records)
{
    if (m_delegate && !m_delegate->isSendingAllowed())
        return false;
    ValueList values;
    QList<qint32> ids;
    for (const Properties &record : records) {
        values.append(record);
        const MetricPostType identity = record.value(QStringLiteral("id"));
        if (const qint64 *id = identity.get<qint64>())
            ids.append(qint32(*id));
    }
    MetricPostLogger::debug([] { return QStringLiteral("Sending batch of data"); });
    MetricPostLogger::debug([&] { return MetricPostType(values).description(); });

    using Failures = FlushRequest::Failures;
    // What cannot be encoded cannot be sent, as if it had been refused.
    const auto requestData = JSONHandler::encodeAPIData(values);
    if (requestData) {
        const bool success = m_flushRequest.sendRequest(
            *requestData, batch.type, useIPAddressForGeoLocation(), batch.headers, batch.queryItems,
            m_useGzipCompression, batch.wasRefused ? Failures::CountedBefore : Failures::Count);
        if (success) {
            batch.hasDelivered = true;
            return !m_delegate || m_delegate->flushSuccess(batch.type, ids);
        }
        if (!m_flushRequest.wasRefused())
            return false;
    }
    batch.wasRefused = true;
    if (records.size() > 1) {
        const qsizetype half = records.size() / 2;
        return sendPart(batch, records.first(half)) && sendPart(batch, records.sliced(half));
    }
    batch.refusedIds.append(ids);
    return batch.hasDelivered || batch.refusedIds.size() < maxRefusedWithoutSuccess;
}

// Taken by value: the head of an unshared list is removed without copying the rest.
QList<Properties> Flush::removeProcessedBatch(int batchSize, QList<Properties> queue)
{
    if (batchSize > queue.size())
        return {};
    queue.remove(0, batchSize);
    return queue;
}

Seconds Flush::flushInterval() const
{
    return m_flushRequestReadWriteLock.read([this] { return m_flushInterval; });
}

void Flush::setFlushInterval(Seconds interval)
{
    setInitialFlushInterval(interval);
    if (m_delegate)
        m_delegate->flush(false, {});
    startFlushTimer();
}

void Flush::setInitialFlushInterval(Seconds interval)
{
    m_flushRequestReadWriteLock.write([&] { m_flushInterval = interval; });
}

int Flush::flushBatchSize() const
{
    return m_flushRequestReadWriteLock.read([this] { return m_flushBatchSize; });
}

void Flush::setFlushBatchSize(int size)
{
    // Empty batches would never empty a queue.
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
