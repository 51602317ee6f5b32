// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// The way from the store to the service.
#include "InstanceCore.h"

#include "InstanceStore.h"
#include "MainQueue.h"
#include "MetricPost/MetricPostLogger.h"

namespace metricpost
{

namespace
{

PersistenceType persistenceType(FlushType type)
{
    switch (type) {
    case FlushType::events:
        return PersistenceType::events;
    case FlushType::people:
        return PersistenceType::people;
    case FlushType::groups:
        break;
    }
    return PersistenceType::groups;
}

} // namespace

void InstanceCore::flush(bool performFullFlush, std::function<void()> completion)
{
    if (hasOptedOutTracking()) {
        if (completion)
            runOnMainQueue(std::move(completion));
        return;
    }
    // Through the tracking queue, behind everything that was tracked before, and from there to the
    // network queue, which loads at its turn. Loading earlier would load rows that a flush under
    // way is about to deliver, and send them twice.
    m_trackingQueue.async([this, performFullFlush, completion = std::move(completion)]() mutable {
        m_networkQueue.async(
            [this, performFullFlush, completion = std::move(completion)]() mutable {
                deliver(performFullFlush);
                if (completion)
                    runOnMainQueue(std::move(completion));
            });
    });
}

// On the network queue. Batch by batch, so that a long queue takes no more memory than a batch.
void InstanceCore::deliver(bool performFullFlush)
{
    if (m_flushInstance.serverURL().isEmpty())
        return;
    ProxyServerResource proxy;
    if (m_options.proxyServerConfig && m_options.proxyServerConfig->delegate)
        proxy = m_options.proxyServerConfig->delegate->resourceForProxyServer(m_name);
    for (const FlushType type : allFlushTypes) {
        while (deliverBatch(type, proxy) && performFullFlush) {
        }
    }
    onStore([](Store &store) { store.persistence.shrink(); });
}

// Sends one batch and removes it from the store. True when there may be another.
bool InstanceCore::deliverBatch(FlushType type, const ProxyServerResource &proxy)
{
    if (m_flushInstance.flushRequest().requestNotAllowed() || !claimUploads())
        return false;
    const int batchSize = m_flushInstance.flushBatchSize();
    QList<Properties> records;
    m_trackingQueue.sync([&] {
        if (m_store && mayRecord(*m_store)) {
            records = m_store->persistence.loadEntitiesInBatch(
                persistenceType(type), batchSize, false, !trackAutomaticEventsEnabled());
        }
    });
    const bool delivered =
        m_flushInstance.flushQueue(records, type, proxy.headers, proxy.queryItems);
    if (m_uploadClaim)
        m_uploadClaim->unlock();
    return delivered && records.size() == batchSize;
}

// Waits while another process sends from the same store, as long as its request may take.
bool InstanceCore::claimUploads()
{
    return !m_uploadClaim ||
           m_uploadClaim->lockWithin(FileLock::Mode::Exclusive, FlushRequest::standardAnswerLimit,
                                     [this] { return !isSendingAllowed(); });
}

bool InstanceCore::isSendingAllowed() const
{
    return !m_optedOut && !m_flushInstance.flushRequest().isCancelled();
}

bool InstanceCore::flushSuccess(FlushType type, const QList<qint32> &ids)
{
    bool removed = false;
    m_trackingQueue.sync([&] {
        removed = m_store && m_store->persistence.removeEntitiesInBatch(persistenceType(type), ids);
    });
    return removed;
}

void InstanceCore::flushRefused(FlushType type, const QList<qint32> &ids)
{
    m_refusedRecords += ids.size();
    MetricPostLogger::warn([&] {
        return rawValue(type) + QStringLiteral(" api refuses records, which are set aside: ") +
               QString::number(ids.size());
    });
    onStore([type, ids](Store &store) { store.persistence.setAside(persistenceType(type), ids); });
}

} // namespace metricpost
