// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/BorrowedNote.h"

#include <algorithm>

namespace platform::linux_
{

namespace
{

constexpr unsigned long version = 3;
constexpr unsigned long noType = 0xff;
constexpr std::size_t headFields = 8;
constexpr std::size_t entryFields = 6;
constexpr std::size_t keyFields = 4 + KeyServer::RawKey::maxGroups;
constexpr unsigned long maxEntries = 256;

} // namespace

std::vector<unsigned long> BorrowedNote::pack() const
{
    std::vector<unsigned long> data{version,
                                    keysRepeat,
                                    releasedLocks,
                                    type ? static_cast<unsigned long>(*type) : noType,
                                    rawType.realModifiers,
                                    rawType.virtualModifiers,
                                    rawType.preserves,
                                    rawType.entries.size()};
    for (const KeyServer::RawType::Entry &entry : rawType.entries) {
        data.insert(data.end(),
                    {entry.active, entry.level, entry.realModifiers, entry.virtualModifiers,
                     entry.preservedReal, entry.preservedVirtual});
    }
    for (const KeyServer::RawKey &key : keys) {
        data.insert(data.end(), {key.keycode, key.groupInfo, key.width});
        data.insert(data.end(), key.types.begin(), key.types.end());
        data.push_back(key.keysyms.size());
        data.insert(data.end(), key.keysyms.begin(), key.keysyms.end());
    }
    return data;
}

std::optional<BorrowedNote> BorrowedNote::unpack(const std::vector<unsigned long> &data)
{
    if (data.size() < headFields || data[0] != version || data[7] > maxEntries ||
        data.size() < headFields + data[7] * entryFields)
        return std::nullopt;
    BorrowedNote note;
    note.keysRepeat = data[1] != 0;
    note.releasedLocks = static_cast<std::uint8_t>(data[2]);
    if (data[3] != noType)
        note.type = static_cast<int>(data[3] & 0xff);
    note.rawType = {data[4], data[5], data[6] != 0, {}};
    std::size_t at = headFields;
    for (unsigned long i = 0; i < data[7]; ++i, at += entryFields) {
        note.rawType.entries.push_back(
            {data[at], data[at + 1], data[at + 2], data[at + 3], data[at + 4], data[at + 5]});
    }
    while (at + keyFields <= data.size()) {
        const auto byte = [&](std::size_t field) {
            return static_cast<std::uint8_t>(data[at + field]);
        };
        KeyServer::RawKey key{byte(0), byte(1), byte(2), {byte(3), byte(4), byte(5), byte(6)}, {}};
        const unsigned long keysyms = data[at + keyFields - 1];
        at += keyFields;
        const auto groups = static_cast<unsigned long>(key.groups());
        if (keysyms > data.size() - at || groups > KeyServer::RawKey::maxGroups ||
            keysyms != groups * key.width)
            return std::nullopt;
        const auto first = data.begin() + static_cast<std::ptrdiff_t>(at);
        key.keysyms.assign(first, first + static_cast<std::ptrdiff_t>(keysyms));
        at += keysyms;
        note.keys.push_back(std::move(key));
    }
    return note;
}

} // namespace platform::linux_
