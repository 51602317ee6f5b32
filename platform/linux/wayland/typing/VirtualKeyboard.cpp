// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/typing/VirtualKeyboard.h"

#include <sys/mman.h>
#include <unistd.h>

#include "virtual-keyboard-unstable-v1-client-protocol.h"
#include <wayland-client.h>

namespace platform::linux_
{

namespace
{

constexpr std::uint32_t shiftModifier = 1;

} // namespace

VirtualKeyboard::VirtualKeyboard()
    : m_globals(WaylandGlobals::ofToolkit())
{
    if (!m_globals)
        return;
    m_seat = m_globals->bind<wl_seat>(wl_seat_interface, 1);
    m_manager = m_globals->bind<zwp_virtual_keyboard_manager_v1>(
        zwp_virtual_keyboard_manager_v1_interface, 1);
    m_clock.start();
}

VirtualKeyboard::~VirtualKeyboard()
{
    VirtualKeyboard::end();
    if (m_manager)
        zwp_virtual_keyboard_manager_v1_destroy(m_manager);
    if (m_seat)
        wl_seat_destroy(m_seat);
}

bool VirtualKeyboard::isAvailable() const
{
    return m_seat && m_manager;
}

bool VirtualKeyboard::begin()
{
    if (!isAvailable())
        return false;
    if (!m_keyboard)
        m_keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(m_manager, m_seat);
    return true;
}

bool VirtualKeyboard::setMap(const QByteArray &map)
{
    const int file = memfd_create("quillet-keymap", MFD_CLOEXEC);
    if (file < 0)
        return false;
    const bool written = write(file, map.constData(), std::size_t(map.size())) == map.size();
    if (written)
        zwp_virtual_keyboard_v1_keymap(m_keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                       std::uint32_t(map.size()));
    close(file);
    return written;
}

void VirtualKeyboard::tap(std::uint32_t key, bool withShift)
{
    const auto time = std::uint32_t(m_clock.elapsed());
    if (withShift)
        zwp_virtual_keyboard_v1_modifiers(m_keyboard, shiftModifier, 0, 0, 0);
    zwp_virtual_keyboard_v1_key(m_keyboard, time, key, WL_KEYBOARD_KEY_STATE_PRESSED);
    zwp_virtual_keyboard_v1_key(m_keyboard, time, key, WL_KEYBOARD_KEY_STATE_RELEASED);
    if (withShift)
        zwp_virtual_keyboard_v1_modifiers(m_keyboard, 0, 0, 0, 0);
}

bool VirtualKeyboard::flush()
{
    return m_globals->roundTrip();
}

void VirtualKeyboard::end()
{
    if (!m_keyboard)
        return;
    zwp_virtual_keyboard_v1_destroy(m_keyboard);
    m_keyboard = nullptr;
    m_globals->roundTrip();
}

} // namespace platform::linux_
