// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostType.h"

#include <QString>

#include <functional>

namespace metricpost
{

class SerialQueue;

/// Numbers the records of a session, so that the service can order them and see gaps.
///
/// toDict belongs to the tracking queue, which outlives this object.
class SessionMetadata
{
public:
    /// `now` gives seconds since 1970, `random` 32 random bits.
    SessionMetadata(SerialQueue &trackingQueue, std::function<double()> now,
                    std::function<quint32()> random);

    /// The record's "$mp_metadata" entry; counts the record.
    Properties toDict(bool isEvent = true);

    /// Starts a new session, on the tracking queue. Any thread.
    void applicationWillEnterForeground();

private:
    void startSession();
    QString randomId() const;

    SerialQueue &m_trackingQueue;
    const std::function<double()> m_now;
    const std::function<quint32()> m_random;
    quint64 m_eventsCounter = 0;
    quint64 m_peopleCounter = 0;
    QString m_sessionID;
    quint64 m_sessionStartEpoch = 0;
};

} // namespace metricpost
