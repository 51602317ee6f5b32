// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/TypingEngine.h"

#include <utility>

namespace platform::linux_
{

namespace
{

constexpr Milliseconds tick{2};
constexpr Milliseconds drainLimit{5000};

} // namespace

TypingEngine::TypingEngine(KeyServer &server, InputMethods *methods, const Clock &clock,
                           Later later)
    : m_server(server)
    , m_methods(methods)
    , m_clock(clock)
    , m_later(std::move(later))
    , m_watch(server)
    , m_borrowed(server)
    , m_pings(server, m_watch, clock)
{
    m_borrowed.recover();
}

TypingEngine::~TypingEngine() = default;

void TypingEngine::type(std::unique_ptr<TypingTarget> target, const QList<KeyboardEvent> &events,
                        std::function<void(TypingResult)> completion)
{
    m_waiting.push_back({std::move(target), events, std::move(completion)});
    if (!m_current)
        startNext();
}

void TypingEngine::startNext()
{
    if (m_waiting.empty() || m_current)
        return;
    m_current.reset(new Current{
        std::move(m_waiting.front()), DirectInput(m_methods), {}, {}, 0, {}, TypingResult::Typed});
    m_waiting.pop_front();
    m_fenceRequested = false;
}

// What follows blocks for no longer than the server takes to answer, once it has shown that no
// other client holds it.
bool TypingEngine::passesFence()
{
    m_watch.poll();
    if (!m_fenceRequested) {
        m_fenceRequested = true;
        m_watch.clearFence();
        m_server.requestFence();
        m_watch.poll();
    }
    if (!m_watch.fencePassed())
        return false;
    m_fenceRequested = false;
    return true;
}

std::optional<Milliseconds> TypingEngine::step()
{
    if (!m_current)
        return std::nullopt;
    if (m_server.isBroken())
        return finish(TypingResult::Failed);
    if (!m_current->sequence.target)
        return finish(TypingResult::NoTarget);
    if (!passesFence())
        return tick;
    const auto next = m_current->draining ? drain() : m_current->run ? run() : wait();
    if (m_current && m_server.isBroken())
        return finish(TypingResult::Failed);
    return next;
}

std::optional<Milliseconds> TypingEngine::wait()
{
    const std::optional<KeyServer::Moment> moment = m_server.look();
    if (!moment)
        return finish(TypingResult::Failed);
    Current &current = *m_current;
    if (!current.wait)
        current.wait.emplace(*current.sequence.target, current.directInput, m_clock);
    switch (current.wait->next(*moment)) {
    case TypingWait::Step::Wait:
        return tick;
    case TypingWait::Step::End:
        return finish(current.wait->result());
    case TypingWait::Step::Begin:
        break;
    }
    current.focus = moment->focus;
    current.run.emplace(TypingTools{m_server, m_watch, m_borrowed, m_pings, m_clock},
                        *current.sequence.target, *moment);
    if (!current.run->plan(current.sequence.events))
        return finish(TypingResult::Failed);
    return Milliseconds(0);
}

std::optional<Milliseconds> TypingEngine::run()
{
    switch (m_current->run->next()) {
    case TypingRun::Step::GoOn:
        return tick;
    case TypingRun::Step::Typed:
        return finish(TypingResult::Typed);
    case TypingRun::Step::Failed:
        return finish(TypingResult::Failed);
    case TypingRun::Step::Stopped:
        break;
    }
    return beginDraining(TypingResult::Interrupted);
}

std::optional<Milliseconds> TypingEngine::beginDraining(TypingResult result)
{
    m_current->draining = m_clock.now();
    m_current->result = result;
    return drain();
}

std::optional<Milliseconds> TypingEngine::drain()
{
    Current &current = *m_current;
    if (!current.run->isDrained() && m_clock.now() - *current.draining <= drainLimit &&
        m_server.exists(current.focus))
        return tick;
    const bool elsewhere =
        current.result == TypingResult::Interrupted && current.run->mayBeElsewhere();
    return finish(elsewhere ? TypingResult::Misplaced : current.result);
}

std::optional<Milliseconds> TypingEngine::finish(TypingResult result)
{
    if (!m_server.isBroken()) {
        m_watch.stop();
        m_borrowed.giveBack();
    }
    const auto completion = std::move(m_current->sequence.completion);
    m_current.reset();
    m_later([alive = std::weak_ptr(m_alive), completion, result] {
        if (!alive.expired() && completion)
            completion(result);
    });
    startNext();
    return m_current ? std::optional(Milliseconds(0)) : std::nullopt;
}

bool TypingEngine::stop()
{
    m_waiting.clear();
    m_alive.reset();
    if (!m_current || m_server.isBroken())
        return true;
    m_watch.poll();
    // What is on its way would be looked up in the map as it was.
    if (m_current->run && !m_current->draining)
        beginDraining(TypingResult::Interrupted);
    else if (m_current->draining)
        drain();
    else
        finish(TypingResult::Interrupted);
    return !m_current;
}

} // namespace platform::linux_
