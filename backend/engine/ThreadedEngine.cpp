// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/engine/ThreadedEngine.h"

#include "commands/Catalogue.h"

#include <QThread>

namespace
{

struct Shared {
    std::stop_source stop;
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
        m_shared->stop.request_stop();
        m_shared->done = nullptr;
    }

private:
    std::shared_ptr<Shared> m_shared;
};

} // namespace

ThreadedEngine::ThreadedEngine(Compute compute)
    : m_compute(std::move(compute))
{
    m_long.setMaxThreadCount(std::max(4, QThread::idealThreadCount()));
    m_short.setMaxThreadCount(2);
}

ThreadedEngine::~ThreadedEngine()
{
    for (QThreadPool *pool : {&m_long, &m_short}) {
        pool->clear();
        pool->waitForDone();
    }
}

std::unique_ptr<PendingWork> ThreadedEngine::answer(const EngineRequest &request, Done done)
{
    auto shared = std::make_shared<Shared>();
    shared->done = std::move(done);
    const bool isShort = request.text.size() <= maxShortText &&
                         commandKind(request.command) != CommandKind::Translate;
    QThreadPool &pool = isShort ? m_short : m_long;
    pool.start([this, shared, request] {
        if (shared->stop.stop_requested())
            return;
        const EngineAnswer answer = m_compute(request, shared->stop.get_token());
        if (shared->stop.stop_requested())
            return;
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
