// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/engine/ThreadedEngine.h"

#include <QThread>
#include <atomic>

namespace
{

struct Shared {
    std::atomic<bool> cancelled = false;
    /// Touched by the event loop's thread only.
    Engine::Done done;
};

class ThreadedJob : public PendingWork
{
public:
    explicit ThreadedJob(std::shared_ptr<Shared> shared)
        : m_shared(std::move(shared))
    {
    }
    ~ThreadedJob() override
    {
        m_shared->cancelled = true;
        m_shared->done = nullptr;
    }

private:
    std::shared_ptr<Shared> m_shared;
};

} // namespace

ThreadedEngine::ThreadedEngine(Compute compute)
    : m_compute(std::move(compute))
{
    m_pool.setMaxThreadCount(std::max(4, QThread::idealThreadCount()));
}

ThreadedEngine::~ThreadedEngine()
{
    m_pool.clear();
    m_pool.waitForDone();
}

std::unique_ptr<PendingWork> ThreadedEngine::answer(const EngineRequest &request, Done done)
{
    auto shared = std::make_shared<Shared>();
    shared->done = std::move(done);
    m_pool.start([this, shared, request] {
        if (shared->cancelled)
            return;
        const EngineAnswer answer = m_compute(request);
        QMetaObject::invokeMethod(
            &m_context,
            [shared, answer] {
                if (shared->done)
                    shared->done(answer);
            },
            Qt::QueuedConnection);
    });
    return std::make_unique<ThreadedJob>(shared);
}
