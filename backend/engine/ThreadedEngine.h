// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/engine/Engine.h"

#include <QObject>
#include <QThreadPool>

/// Makes an engine of a function that computes: each request runs on a thread of
/// a pool, so that the event loop stays free. Short texts have threads of their
/// own, so that long ones and translations do not hold them up. A cancelled request that has begun
/// is computed to its end and dropped.
class ThreadedEngine : public Engine
{
public:
    using Compute = std::function<EngineAnswer(const EngineRequest &)>;

    /// Up to this length a text counts as short, in UTF-16 units.
    static constexpr qsizetype maxShortText = 1000;

    /// `compute` is called from several threads at once.
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
