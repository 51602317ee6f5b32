// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "FlushRequest.h"
#include "FlushTimer.h"
#include "FlushType.h"
#include "MetricPost/MetricPostType.h"
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
    virtual void flushSuccess(FlushType type, const QList<qint32> &ids) = 0;
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

    /// Starts the timer afresh; with an interval of 0 none runs.
    void startFlushTimer();
    void stopFlushTimer();
    void flushSelector();

    void applicationDidBecomeActive() { startFlushTimer(); }
    void applicationWillResignActive() { stopFlushTimer(); }

    /// Sends the records batch by batch, in order, up to the first failure. The delegate hears
    /// of each delivered batch.
    void flushQueue(const QList<Properties> &queue, FlushType type, const Headers &headers,
                    const QueryItems &queryItems);
    static QList<Properties> removeProcessedBatch(int batchSize, QList<Properties> queue);

    /// Seconds. Setting it asks for a flush and starts the timer afresh.
    double flushInterval() const;
    void setFlushInterval(double interval);
    /// Without the flush and the timer's start.
    void setInitialFlushInterval(double interval);
    int flushBatchSize() const;
    void setFlushBatchSize(int size);
    QString serverURL() const;
    void setServerURL(const QString &url);

    bool useIPAddressForGeoLocation() const { return m_useIPAddressForGeoLocation; }
    void setUseIPAddressForGeoLocation(bool use) { m_useIPAddressForGeoLocation = use; }
    bool flushOnBackground() const { return m_flushOnBackground; }
    void setFlushOnBackground(bool flush) { m_flushOnBackground = flush; }

    FlushRequest &flushRequest() { return m_flushRequest; }

private:
    void flushQueueInBatches(QList<Properties> queue, FlushType type, const Headers &headers,
                             const QueryItems &queryItems);

    FlushDelegate *m_delegate = nullptr;
    std::atomic<bool> m_useIPAddressForGeoLocation{true};
    std::atomic<bool> m_flushOnBackground{true};
    const bool m_useGzipCompression;
    FlushRequest m_flushRequest;
    mutable ReadWriteLock m_flushRequestReadWriteLock{QStringLiteral("dratru.flush_interval.lock")};
    double m_flushInterval = 0;
    int m_flushBatchSize;
    QString m_serverURL;
    FlushTimer m_timer;
};

} // namespace metricpost
