// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/InputWatch.h"

namespace platform::linux_
{

InputWatch::InputWatch(KeyServer &server)
    : m_server(server)
{
}

void InputWatch::start(WindowId focus)
{
    m_expected.clear();
    m_userActed = m_focusLost = m_mapChanged = m_fencePassed = false;
    m_pings.clear();
    m_active = true;
    m_server.watch(focus);
}

void InputWatch::stop()
{
    if (!m_active)
        return;
    m_active = false;
    m_server.unwatch();
}

void InputWatch::poll()
{
    while (const std::optional<KeyServer::Event> event = m_server.nextEvent())
        std::visit([this](const auto &what) { handle(what); }, *event);
}

void InputWatch::handle(const KeyServer::KeyPressed &key)
{
    const bool expected = key.isOurs && !m_expected.empty() && m_expected.front() == key.keycode;
    if (expected)
        m_expected.pop_front();
    else
        m_userActed = true;
}

void InputWatch::handle(const KeyServer::ButtonPressed &press)
{
    // Buttons 4 to 7 scroll, which moves neither focus nor caret.
    if (press.button < 4 || press.button > 7)
        m_userActed = true;
}

// A window manager numbers its pings by the server's time.
void InputWatch::handle(const KeyServer::Pong &pong)
{
    const auto found = m_pings.find(pong.window);
    if (found == m_pings.end())
        return;
    Pings &pings = found->second;
    if (pong.number > pings.answered && pong.number <= pings.sent)
        pings.answered = pong.number;
}

std::uint32_t InputWatch::lastPong(WindowId window) const
{
    const auto found = m_pings.find(window);
    return found == m_pings.end() ? 0 : found->second.answered;
}

} // namespace platform::linux_
