// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

#include <cstdint>

namespace platform::linux_
{

/// Keys and the maps that say what they type, in one stream: a key means what the last map before
/// it says, however late a program reads it. Main thread only.
class KeyStream
{
public:
    virtual ~KeyStream() = default;

    /// False where the compositor takes no keys.
    virtual bool begin() = 0;
    /// `map`: in the format "XKB text v1", NUL included.
    virtual bool setMap(const QByteArray &map) = 0;
    /// A press and a release. `key`: evdev's code.
    virtual void tap(std::uint32_t key, bool withShift) = 0;
    /// Waits until the compositor has taken everything. False when the connection is broken.
    virtual bool flush() = 0;
    virtual void end() = 0;
};

} // namespace platform::linux_
