// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "FlushRequest.h"
#include "FlushTimer.h"
#include "FlushType.h"
#include "MetricPost/MetricPostType.h"
#include "MetricPost/Seconds.h"
#include "ReadWriteLock.h"

#include <QList>
#include <QString>

#include <atomic>
#include <functional>

namespace metricpost
{

/// Implemented by the instance.
class FlushDelegate
{
public:
    virtual ~FlushDelegate() = default;
    virtual void flush(bool performFullFlush, std::function<void()> completion) = 0;
    /// The records arrived. False when they could not be removed from the store.
    virtual bool flushSuccess(FlushType type, const QList<qint32> &ids) = 0;
    /// The service refuses these records, and accepts others.
    virtual void flushRefused(FlushType type, const QList<qint32> &ids) = 0;
    /// Whether records may still be sent; asked before each request.
    virtual bool isSendingAllowed() const = 0;
};

/// Decides when records are sent, cuts them into batches and sends them.
///
/// flushQueue and what it calls belong to the network queue; the rest may be called from any
/// thread. The delegate outlives this object.
class Flush
{
public:
    Flush(const QString &serverURL, bool useGzipCompression,
          const FlushRequest::Surroundings &surroundings);

    void setDelegate(FlushDelegate *delegate) { m_delegate = delegate; }

    /// Restarts the timer; with an interval of 0 no timer runs.
    void startFlushTimer();
    void stopFlushTimer();
    void flushSelector();

    void applicationDidBecomeActive() { startFlushTimer(); }
    void applicationWillResignActive() { stopFlushTimer(); }

    /// Single records that the service may refuse in one batch while it accepts none. With more,
    /// it refuses everything, and nothing is set aside.
    static constexpr int maxRefusedWithoutSuccess = 8;

    /// Sends the records batch by batch, in order, up to the first failure, and reports each
    /// delivered batch to the delegate. A refused batch is halved until the records that the
    /// service refuses are known. False when records are left to be sent later.
    bool flushQueue(const QList<Properties> &queue, FlushType type, const Headers &headers,
                    const QueryItems &queryItems);
    static QList<Properties> removeProcessedBatch(int batchSize, QList<Properties> queue);

    /// Setting it asks for a flush and restarts the timer.
    Seconds flushInterval() const;
    void setFlushInterval(Seconds interval);
    /// Without the flush and the timer's start.
    void setInitialFlushInterval(Seconds interval);
    int flushBatchSize() const;
    void setFlushBatchSize(int size);
    QString serverURL() const;
    void setServerURL(const QString &url);

    bool useIPAddressForGeoLocation() const { return m_useIPAddressForGeoLocation; }
    void setUseIPAddressForGeoLocation(bool use) { m_useIPAddressForGeoLocation = use; }
    bool flushOnBackground() const { return m_flushOnBackground; }
    void setFlushOnBackground(bool flush) { m_flushOnBackground = flush; }

    FlushRequest &flushRequest() { return m_flushRequest; }
    const FlushRequest &flushRequest() const { return m_flushRequest; }

private:
    struct Batch;

    bool flushQueueInBatches(QList<Properties> queue, FlushType type, const Headers &headers,
                             const QueryItems &queryItems);
    bool sendPart(Batch &batch, const QList<Properties> &records);

    FlushDelegate *m_delegate = nullptr;
    std::atomic<bool> m_useIPAddressForGeoLocation{true};
    std::atomic<bool> m_flushOnBackground{true};
    const bool m_useGzipCompression;
    FlushRequest m_flushRequest;
    mutable ReadWriteLock m_flushRequestReadWriteLock{QStringLiteral("dratru.flush_interval.lock")};
    Seconds m_flushInterval{0};
    int m_flushBatchSize;
    QString m_serverURL;
    FlushTimer m_timer;
};

} // namespace metricpost
