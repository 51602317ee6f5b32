// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/TypingRun.h"
#include "platform/linux/keyboard/TypingWait.h"
#include "platform/linux/ports/Typist.h"

#include <deque>
#include <functional>
#include <memory>

namespace platform::linux_
{

/// Types one text after the other: waits until it may type, types, and drains. To drain is to wait
/// until the program has taken the sent keys, so that the keyboard map can be restored. Works in
/// steps of a few milliseconds, which the owner of the event loop calls. The server's thread only.
class TypingEngine
{
public:
    /// Runs a function from the event loop.
    using Later = std::function<void(std::function<void()>)>;

    /// `methods` may be null. Gives back what a process that is gone has left borrowed.
    TypingEngine(KeyServer &server, InputMethods *methods, const Clock &clock, Later later);
    ~TypingEngine();

    void type(std::unique_ptr<TypingTarget> target, const QList<KeyboardEvent> &events,
              std::function<void(TypingResult)> completion);

    /// Does what can be done now. Returns the time after which to call again; nothing when there is
    /// no more to do. Call it also when the server has sent something.
    std::optional<Milliseconds> step();

    /// Stops typing for good. True once the keys on their way have been taken and the map is as it
    /// was; call again until then.
    bool stop();

private:
    struct Sequence {
        std::unique_ptr<TypingTarget> target;
        QList<KeyboardEvent> events;
        std::function<void(TypingResult)> completion;
    };
    /// One text under way.
    struct Current {
        Sequence sequence;
        DirectInput directInput;
        std::optional<TypingWait> wait;
        std::optional<TypingRun> run;
        WindowId focus = 0;
        /// Since when it drains, and what it ends with.
        std::optional<Milliseconds> draining;
        TypingResult result = TypingResult::Typed;
    };

    void startNext();
    bool passesFence();
    std::optional<Milliseconds> wait();
    std::optional<Milliseconds> run();
    std::optional<Milliseconds> drain();
    std::optional<Milliseconds> beginDraining(TypingResult result);
    std::optional<Milliseconds> finish(TypingResult result);

    KeyServer &m_server;
    InputMethods *m_methods;
    const Clock &m_clock;
    const Later m_later;
    InputWatch m_watch;
    BorrowedKeys m_borrowed;
    Pings m_pings;
    std::deque<Sequence> m_waiting;
    std::unique_ptr<Current> m_current;
    bool m_fenceRequested = false;
    /// Lost when this is gone, so that what comes later does nothing.
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

} // namespace platform::linux_
