// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/BorrowedKeys.h"

#include <algorithm>

namespace platform::linux_
{

namespace
{

// The core protocol's modifier bits.
constexpr std::uint8_t shiftModifier = 1;
constexpr std::uint8_t lockModifier = 2;
constexpr std::uint8_t mod3Modifier = 32;
constexpr std::uint8_t mod5Modifier = 128;

} // namespace

BorrowedKeys::BorrowedKeys(KeyServer &server)
    : m_server(server)
{
}

BorrowedKeys::~BorrowedKeys()
{
    giveBack();
}

void BorrowedKeys::recover()
{
    m_server.grab();
    if (!m_server.hasTypist()) {
        if (const std::optional<BorrowedNote> note = BorrowedNote::unpack(m_server.note())) {
            restoreMap(*note);
            m_server.setKeysRepeat(note->keysRepeat);
            restoreLocks(note->releasedLocks);
        }
        m_server.deleteNote();
    }
    m_server.ungrab();
}

bool BorrowedKeys::begin(const KeyboardMap &map, std::uint8_t locked, std::uint8_t locks)
{
    recover();
    m_keycodes = map.spareKeycodes();
    m_type = map.spareType();
    // Bit 0 of a level is the first modifier here, bit 1 the second, bit 2 the third.
    m_levelModifiers.clear();
    const int levels = m_type ? map.types[static_cast<std::size_t>(*m_type)].levels : 1;
    for (const std::uint8_t modifier : {shiftModifier, mod5Modifier, mod3Modifier}) {
        if ((map.levelModifiers & modifier) && (2 << m_levelModifiers.size()) <= levels)
            m_levelModifiers.push_back(modifier);
    }

    m_server.grab();
    const bool free = !m_server.hasTypist();
    if (free) {
        m_server.setTypist(true);
        m_keysRepeat = m_server.keysRepeat();
        m_releasedLocks = locked & locks;
        writeNote();
        m_server.setKeysRepeat(false);
        if (m_releasedLocks)
            m_server.lockModifiers(locked & ~m_releasedLocks);
    }
    m_server.ungrab();
    m_begun = free && !m_server.isBroken();
    return m_begun;
}

bool BorrowedKeys::takeLayoutKeys(const KeyboardMap &map)
{
    // Without a type of their own they could not be told from the layout's.
    if (!m_type)
        return false;
    const std::vector<std::uint8_t> keycodes = map.characterKeycodes();
    m_keycodes.insert(m_keycodes.end(), keycodes.begin(), keycodes.end());
    m_server.grab();
    writeNote();
    m_server.ungrab();
    return true;
}

bool BorrowedKeys::lends(std::uint8_t keycode) const
{
    return std::find(m_keycodes.begin(), m_keycodes.end(), keycode) != m_keycodes.end();
}

std::size_t BorrowedKeys::levels() const
{
    return std::size_t{1} << m_levelModifiers.size();
}

std::size_t BorrowedKeys::bankCapacity() const
{
    return m_keycodes.size() / bankCount * levels();
}

std::size_t BorrowedKeys::wholeCapacity() const
{
    return m_keycodes.size() * levels();
}

std::vector<std::uint8_t> BorrowedKeys::bankKeycodes(std::optional<int> bank) const
{
    if (!bank)
        return m_keycodes;
    const auto size = static_cast<std::ptrdiff_t>(m_keycodes.size() / bankCount);
    const auto first = m_keycodes.begin() + size * *bank;
    return {first, first + size};
}

std::uint8_t BorrowedKeys::modifiersFor(std::size_t level) const
{
    std::uint8_t modifiers = 0;
    for (std::size_t bit = 0; bit < m_levelModifiers.size(); ++bit) {
        if (level >> bit & 1)
            modifiers |= m_levelModifiers[bit];
    }
    return modifiers;
}

void BorrowedKeys::map(const std::vector<Load> &loads)
{
    if (loads.empty())
        return;
    std::vector<KeyServer::RawKey> keys;
    for (const Load &load : loads) {
        const std::vector<KeyServer::RawKey> more = keysFor(load);
        keys.insert(keys.end(), more.begin(), more.end());
    }
    std::optional<std::pair<int, KeyServer::RawType>> type;
    if (!m_taken && m_type)
        type.emplace(*m_type, lentType());
    m_taken = true;
    m_server.grab();
    m_server.changeOwnMap(keys, std::move(type));
    m_server.ungrab();
}

KeyServer::RawType BorrowedKeys::lentType() const
{
    KeyServer::RawType lent;
    for (std::size_t i = 0; i < levels() * 2; ++i) {
        KeyServer::RawType::Entry entry;
        entry.level = i >> 1;
        entry.realModifiers = (i & 1) ? lockModifier : 0;
        entry.realModifiers |= modifiersFor(entry.level);
        lent.realModifiers |= entry.realModifiers;
        if (entry.realModifiers)
            lent.entries.push_back(entry);
    }
    return lent;
}

// Level by level: the first characters need no modifiers, and neighbours the same ones.
std::vector<KeyServer::RawKey> BorrowedKeys::keysFor(const Load &load)
{
    const std::vector<std::uint8_t> keycodes = bankKeycodes(load.bank);
    auto &slots = m_slots[load.bank.value_or(0)];
    slots.clear();
    std::vector<KeyServer::RawKey> keys;
    const std::size_t used = std::min(keycodes.size(), load.characters.size());
    for (std::size_t i = 0; i < used; ++i) {
        std::vector<unsigned long> keysyms(levels(), 0);
        std::uint8_t level = 0;
        for (std::size_t at = i; at < load.characters.size(); at += keycodes.size(), ++level) {
            keysyms[level] = keysymForCodePoint(load.characters[at]);
            slots.emplace(load.characters[at], Keystroke{keycodes[i], modifiersFor(level)});
        }
        keys.push_back({keycodes[i],
                        1,
                        static_cast<std::uint8_t>(levels()),
                        {static_cast<std::uint8_t>(m_type.value_or(0))},
                        std::move(keysyms)});
    }
    return keys;
}

std::optional<Keystroke> BorrowedKeys::keyFor(std::optional<int> bank, char32_t codePoint) const
{
    const auto &slots = m_slots[bank.value_or(0)];
    const auto found = slots.find(codePoint);
    return found == slots.end() ? std::nullopt : std::optional(found->second);
}

void BorrowedKeys::giveBack()
{
    if (!m_begun)
        return;
    m_begun = false;
    m_server.grab();
    if (m_taken) {
        if (const std::optional<BorrowedNote> note = BorrowedNote::unpack(m_server.note()))
            restoreMap(*note);
    }
    m_server.setKeysRepeat(m_keysRepeat);
    restoreLocks(m_releasedLocks);
    m_server.deleteNote();
    m_server.setTypist(false);
    m_server.ungrab();
    m_taken = false;
    for (auto &slots : m_slots)
        slots.clear();
}

void BorrowedKeys::restoreLocks(std::uint8_t released)
{
    if (!released)
        return;
    if (const std::optional<KeyServer::Moment> moment = m_server.look())
        m_server.lockModifiers(moment->lockedModifiers | released);
}

void BorrowedKeys::writeNote()
{
    BorrowedNote note;
    note.keysRepeat = m_keysRepeat;
    note.releasedLocks = m_releasedLocks;
    if (const std::optional<KeyServer::RawMap> map = m_server.readOwnMap()) {
        for (const std::uint8_t keycode : m_keycodes)
            note.keys.push_back(map->keys[keycode]);
        if (m_type && *m_type < static_cast<int>(map->types.size())) {
            note.type = m_type;
            note.rawType = map->types[static_cast<std::size_t>(*m_type)];
        }
    }
    m_server.setNote(note.pack());
}

void BorrowedKeys::restoreMap(const BorrowedNote &note)
{
    const std::optional<KeyServer::RawMap> map = m_server.readOwnMap();
    const int type = note.type.value_or(0);
    if (!map || type >= static_cast<int>(map->types.size()))
        return;
    // A key that no longer has the shape that we gave it belongs to a layout that was set since.
    std::vector<KeyServer::RawKey> keys;
    std::copy_if(note.keys.begin(), note.keys.end(), std::back_inserter(keys),
                 [&](const KeyServer::RawKey &key) {
                     const KeyServer::RawKey &now = map->keys[key.keycode];
                     return now.groups() == 1 && now.types[0] == type;
                 });
    std::optional<std::pair<int, KeyServer::RawType>> changedType;
    if (note.type) {
        const KeyServer::RawType &now = map->types[static_cast<std::size_t>(type)];
        constexpr unsigned long ours = shiftModifier | lockModifier | mod3Modifier | mod5Modifier;
        const bool isOurs = now.virtualModifiers == 0 && (now.realModifiers & lockModifier) &&
                            !(now.realModifiers & ~ours);
        if (isOurs)
            changedType.emplace(type, note.rawType);
    }
    m_server.changeOwnMap(keys, std::move(changedType));
}

} // namespace platform::linux_
