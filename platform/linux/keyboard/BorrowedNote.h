// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/keyboard/KeyServer.h"

#include <optional>
#include <vector>

namespace platform::linux_
{

/// What has been borrowed, as it was before: kept at the server as a list of numbers, so that it
/// can be given back when the process that borrowed it is gone. A plain value.
struct BorrowedNote {
    bool keysRepeat = false;
    /// Locks that are off while text is typed.
    std::uint8_t releasedLocks = 0;
    /// The lent key type, by its index; absent when none is.
    std::optional<int> type;
    KeyServer::RawType rawType;
    std::vector<KeyServer::RawKey> keys;

    std::vector<unsigned long> pack() const;
    /// Nothing for what pack() cannot have made.
    static std::optional<BorrowedNote> unpack(const std::vector<unsigned long> &data);

    friend bool operator==(const BorrowedNote &, const BorrowedNote &) = default;
};

} // namespace platform::linux_
