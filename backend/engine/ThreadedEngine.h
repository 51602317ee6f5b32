// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/engine/Engine.h"

#include <QObject>
#include <QThreadPool>

#include <stop_token>

/// Makes an engine of a function that computes: each request runs on a thread of
/// a pool, so that the event loop stays free. Short texts have threads of their
/// own, so that long ones and translations do not hold them up. A cancelled request makes room for
/// the next: what has begun is asked to stop.
class ThreadedEngine : public Engine
{
public:
    using Compute = std::function<EngineAnswer(const EngineRequest &, const std::stop_token &)>;

    /// Up to this length a text counts as short, in UTF-16 units.
    static constexpr qsizetype maxShortText = 1000;

    /// `compute` is called from several threads at once. It returns soon after a stop is requested,
    /// and what it then returns is dropped.
    explicit ThreadedEngine(Compute compute);
    /// Waits for what is being computed.
    ~ThreadedEngine() override;

    std::unique_ptr<PendingWork> answer(const EngineRequest &request, Done done) override;

private:
    Compute m_compute;
    QThreadPool m_long;
    QThreadPool m_short;
    QObject m_context;
};
