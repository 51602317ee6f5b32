// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/CharacterBanks.h"

#include <algorithm>
#include <utility>

namespace platform::linux_
{

namespace
{

// Banks that are mapped in one change of the map.
constexpr std::size_t banksAtOnce = 3;
// A program that does not answer pings gets this long to fetch a new map.
constexpr Milliseconds deafMapPause{150};

} // namespace

CharacterBanks::CharacterBanks(KeyServer &server, InputWatch &watch, BorrowedKeys &borrowed,
                               Pings &pings, std::vector<Segment> segments,
                               std::vector<WindowId> companions, const Clock &clock)
    : m_server(server)
    , m_watch(watch)
    , m_borrowed(borrowed)
    , m_pings(pings)
    , m_segments(std::move(segments))
    , m_companions(std::move(companions))
    , m_clock(clock)
    , m_banks(m_segments.size() == 1 ? 1 : BorrowedKeys::bankCount)
{
}

void CharacterBanks::reach(std::size_t key)
{
    while (m_current + 1 < m_segments.size() && key == m_segments[m_current].end)
        ++m_current;
}

void CharacterBanks::update(std::size_t handled)
{
    map(mappable(handled));
    for (Bank &bank : m_banks)
        settle(bank);
}

bool CharacterBanks::ready() const
{
    const Bank &bank = bankOf(m_current);
    return bank.segment == m_current && bank.settled;
}

std::optional<Keystroke> CharacterBanks::keyFor(char32_t codePoint) const
{
    return m_borrowed.keyFor(bankNumber(m_current), codePoint);
}

std::optional<int> CharacterBanks::bankNumber(std::size_t segment) const
{
    if (m_segments.size() == 1)
        return std::nullopt;
    return static_cast<int>(segment % m_banks.size());
}

// The segments to come whose bank does not hold them yet and may be mapped again.
std::vector<std::size_t> CharacterBanks::mappable(std::size_t handled)
{
    m_waiting = false;
    std::vector<std::size_t> found;
    const std::size_t last = std::min(m_segments.size(), m_current + m_banks.size());
    for (std::size_t i = m_current; i < last; ++i) {
        const Bank &bank = bankOf(i);
        if (bank.segment == i)
            continue;
        if (bank.segment && handled < m_segments[*bank.segment].end)
            m_waiting = true;
        else
            found.push_back(i);
    }
    return found;
}

// As many at once as are wanted to make it worth the time that every program takes for a new map,
// fewer when typing would wait for them.
void CharacterBanks::map(const std::vector<std::size_t> &segments)
{
    if (segments.empty())
        return;
    const std::size_t next = segments.front();
    if (next != m_current && segments.size() < std::min(banksAtOnce, m_segments.size() - next))
        return;
    std::vector<BorrowedKeys::Load> loads;
    std::vector<Bank *> changed;
    for (const std::size_t i : segments) {
        Bank &bank = bankOf(i);
        bank = {};
        bank.segment = i;
        if (m_segments[i].characters.empty())
            continue;
        loads.push_back({bankNumber(i), m_segments[i].characters});
        changed.push_back(&bank);
    }
    if (loads.empty())
        return;
    m_borrowed.map(loads);
    // The round trip brings the notices of our own change.
    m_server.look();
    m_watch.poll();
    m_watch.clearMapChange();
    for (Bank *bank : changed) {
        bank->settled = false;
        bank->mappedAt = m_clock.now();
        if (!m_pings.answers())
            continue;
        bank->pings.push_back(m_pings.send());
        for (const WindowId companion : m_companions)
            bank->pings.push_back(m_pings.send(companion));
    }
}

// A program follows a new map once it has answered a ping that came after the notice, on every
// connection that it looks keys up with: a browser asks its toolkit's, which it reads in another
// part of its event loop than the keys. What announces that it answers and does not is left out.
void CharacterBanks::settle(Bank &bank)
{
    if (bank.settled)
        return;
    const Milliseconds waited = m_clock.now() - bank.mappedAt;
    if (!m_pings.answers()) {
        bank.settled = waited >= deafMapPause;
        return;
    }
    const auto answered = [this](const Pings::Ping &ping) { return m_pings.answered(ping); };
    bank.settled = std::all_of(bank.pings.begin(), bank.pings.end(), answered);
    if (bank.settled || waited <= Pings::limit || !answered(bank.pings.front()))
        return;
    for (const Pings::Ping &ping : bank.pings) {
        if (!answered(ping))
            std::erase(m_companions, ping.window);
    }
    bank.settled = true;
}

} // namespace platform::linux_
