// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/TypingWait.h"

namespace platform::linux_
{

namespace
{

// How long things may take.
constexpr Milliseconds focusLimit{2000};
constexpr Milliseconds heldModifiersLimit{15000};
constexpr Milliseconds heldKeysLimit{1000};
constexpr Milliseconds readyLimit{10000};

} // namespace

DirectInput::DirectInput(InputMethods *methods)
    : m_methods(methods)
{
}

DirectInput::~DirectInput()
{
    if (m_answer)
        m_methods->resume();
}

std::optional<bool> DirectInput::isDirect()
{
    if (!m_methods)
        return true;
    if (!m_answer) {
        m_answer = std::make_shared<std::optional<bool>>();
        m_methods->suspend([answer = m_answer](bool direct) { *answer = direct; });
    }
    return *m_answer;
}

TypingWait::TypingWait(TypingTarget &target, DirectInput &directInput, const Clock &clock)
    : m_target(target)
    , m_directInput(directInput)
    , m_clock(clock)
    , m_start(clock.now())
{
}

TypingWait::Step TypingWait::end(TypingResult result)
{
    m_result = result;
    return Step::End;
}

TypingWait::Step TypingWait::next(const KeyServer::Moment &moment)
{
    const Milliseconds waited = m_clock.now() - m_start;
    const bool focused = moment.focus != 0 && m_target.hasFocus();
    if (!focused && waited > focusLimit)
        return end(TypingResult::NoTarget);
    if (moment.heldModifiers && waited > heldModifiersLimit)
        return end(TypingResult::Interrupted);
    // A key that stays down for longer is stuck and repeats no more once another one is pressed.
    const bool held = moment.heldModifiers || (moment.keyHeld && waited < heldKeysLimit);
    if (!focused || held)
        return Step::Wait;
    const std::optional<bool> direct = m_directInput.isDirect();
    if (direct == false)
        return end(TypingResult::Failed);
    if (m_target.isReadyForKeys() && direct)
        return Step::Begin;
    m_asking = m_asking.value_or(m_clock.now());
    return m_clock.now() - *m_asking > readyLimit ? end(TypingResult::Interrupted) : Step::Wait;
}

} // namespace platform::linux_
