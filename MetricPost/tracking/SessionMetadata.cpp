// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "SessionMetadata.h"

#include "SerialQueue.h"

#include <cmath>

namespace metricpost
{

SessionMetadata::SessionMetadata(SerialQueue &trackingQueue, std::function<double()> now,
                                 std::function<quint32()> random)
    : m_trackingQueue(trackingQueue)
    , m_now(std::move(now))
    , m_random(std::move(random))
{
    startSession();
}

Properties SessionMetadata::toDict(bool isEvent)
{
    quint64 &counter = isEvent ? m_eventsCounter : m_peopleCounter;
    const Properties metadata{
        {QStringLiteral("$mp_event_id"), randomId()},
        {QStringLiteral("$mp_session_id"), m_sessionID},
        {QStringLiteral("$mp_session_seq_id"), counter},
        {QStringLiteral("$mp_session_start_sec"), m_sessionStartEpoch},
    };
    ++counter;
    return {{QStringLiteral("$mp_metadata"), metadata}};
}

void SessionMetadata::applicationWillEnterForeground()
{
    m_trackingQueue.async([this] { startSession(); });
}

void SessionMetadata::startSession()
{
    const double now = m_now();
    constexpr double limit = 18446744073709551616.0; // 2^64
    if (!std::isfinite(now) || now < 0 || now >= limit)
        qFatal("The session's start is no time after 1970: %f", now);
    m_eventsCounter = 0;
    m_peopleCounter = 0;
    m_sessionID = randomId();
    m_sessionStartEpoch = quint64(now);
}

// 64 random bits as 16 hexadecimal digits.
QString SessionMetadata::randomId() const
{
    const quint64 high = m_random();
    const quint64 low = m_random();
    return QStringLiteral("%1").arg(high << 32 | low, 16, 16, QLatin1Char('0'));
}

} // namespace metricpost
