// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QElapsedTimer>

#include <chrono>

namespace platform::linux_
{

using Milliseconds = std::chrono::milliseconds;

/// The time since some moment. Tests have one that they set.
class Clock
{
public:
    virtual ~Clock() = default;
    virtual Milliseconds now() const = 0;
};

class SteadyClock : public Clock
{
public:
    SteadyClock() { m_timer.start(); }
    Milliseconds now() const override { return Milliseconds(m_timer.elapsed()); }

private:
    QElapsedTimer m_timer;
};

} // namespace platform::linux_
