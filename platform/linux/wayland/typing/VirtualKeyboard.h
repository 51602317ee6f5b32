// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/wayland/WaylandGlobals.h"
#include "platform/linux/wayland/typing/KeyStream.h"

#include <QElapsedTimer>

#include <memory>

struct wl_seat;
struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;

namespace platform::linux_
{

/// A keyboard of our own beside the user's (the protocol virtual-keyboard, version 1). It exists
/// only between begin() and end().
class VirtualKeyboard : public KeyStream
{
public:
    VirtualKeyboard();
    ~VirtualKeyboard() override;

    /// Whether the compositor lets programs have one.
    bool isAvailable() const;

    bool begin() override;
    bool setMap(const QByteArray &map) override;
    void tap(std::uint32_t key, bool withShift) override;
    bool flush() override;
    void end() override;

private:
    std::unique_ptr<WaylandGlobals> m_globals;
    wl_seat *m_seat = nullptr;
    zwp_virtual_keyboard_manager_v1 *m_manager = nullptr;
    zwp_virtual_keyboard_v1 *m_keyboard = nullptr;
    QElapsedTimer m_clock;
};

} // namespace platform::linux_
