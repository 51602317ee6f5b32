// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/focus/FrameRest.h"

#include <chrono>

namespace platform::linux_
{

namespace
{

using namespace std::chrono_literals;

constexpr auto betweenLooks = 40ms;
constexpr auto whileUnknown = 500ms;
/// How many looks after the first have to agree.
constexpr int agreement = 3;

} // namespace

FrameRest::FrameRest(QObject *parent)
    : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &FrameRest::readAgain);
}

void FrameRest::start(Reader reader, Announce announce)
{
    stop();
    m_reader = std::move(reader);
    m_announce = std::move(announce);
    look();
}

void FrameRest::stop()
{
    m_timer.stop();
    m_reader = {};
    m_announce = {};
    m_hasTold = false;
    m_last = {};
}

void FrameRest::look()
{
    if (!m_reader || (m_timer.isActive() && m_timer.intervalAsDuration() == betweenLooks))
        return;
    m_agreeing = 0;
    m_timer.start(betweenLooks);
}

void FrameRest::leave()
{
    if (!m_reader)
        return;
    m_agreeing = 0;
    look();
    tell(std::nullopt);
}

void FrameRest::readAgain()
{
    const Reading reading = m_reader();
    if (reading.kind == Reading::Kind::Unknown) {
        m_agreeing = 0;
        m_timer.setInterval(whileUnknown);
        return;
    }
    m_timer.setInterval(betweenLooks);
    const std::optional<QRectF> frame =
        reading.kind == Reading::Kind::At ? std::optional(reading.frame) : std::nullopt;
    if (m_last == reading) {
        ++m_agreeing;
    } else {
        m_last = reading;
        m_agreeing = 0;
        if (m_hasTold && m_told != frame)
            tell(std::nullopt);
    }
    if (m_agreeing < agreement)
        return;
    m_timer.stop();
    tell(frame);
}

void FrameRest::tell(const std::optional<QRectF> &frame)
{
    if (m_hasTold && m_told == frame)
        return;
    m_hasTold = true;
    m_told = frame;
    // It may end the watching.
    if (const Announce announce = m_announce)
        announce(frame);
}

} // namespace platform::linux_
