// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// A pointer and a keyboard for a compositor that has none, for the desktop tests. It reads commands
// from standard input, one a line, and answers each with "ok" when the compositor has taken it:
//   move X Y | down | up | key NAME[+NAME…] | type TEXT
#include "platform/linux/wayland/WaylandGlobals.h"

#include <iostream>
#include <sstream>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "virtual-keyboard-unstable-v1-client-protocol.h"
#include "wlr-virtual-pointer-unstable-v1-client-protocol.h"
#include <linux/input-event-codes.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

namespace
{

constexpr int keycodeOffset = 8; // from evdev's codes to XKB's

class Hand
{
public:
    /// The size of all screens together.
    Hand(std::uint32_t width, std::uint32_t height)
        : m_width(width)
        , m_height(height)
    {
        m_seat = m_globals->bind<wl_seat>(wl_seat_interface, 5);
        auto *pointers = m_globals->bind<zwlr_virtual_pointer_manager_v1>(
            zwlr_virtual_pointer_manager_v1_interface, 1);
        m_pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(pointers, m_seat);
        auto *keyboards = m_globals->bind<zwp_virtual_keyboard_manager_v1>(
            zwp_virtual_keyboard_manager_v1_interface, 1);
        m_keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(keyboards, m_seat);
        m_keymap = xkb_keymap_new_from_names(xkb_context_new(XKB_CONTEXT_NO_FLAGS), nullptr,
                                             XKB_KEYMAP_COMPILE_NO_FLAGS);
        const std::string text = xkb_keymap_get_as_string(m_keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
        const int file = memfd_create("keymap", MFD_CLOEXEC);
        if (write(file, text.c_str(), text.size() + 1) < 0)
            std::abort();
        zwp_virtual_keyboard_v1_keymap(m_keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                       std::uint32_t(text.size() + 1));
        m_globals->roundTrip();
    }

    bool obey(const std::string &line)
    {
        std::istringstream in(line);
        std::string command;
        in >> command;
        if (command == "move") {
            std::uint32_t x = 0;
            std::uint32_t y = 0;
            in >> x >> y;
            zwlr_virtual_pointer_v1_motion_absolute(m_pointer, ++m_time, x, y, m_width, m_height);
            zwlr_virtual_pointer_v1_frame(m_pointer);
        } else if (command == "down" || command == "up") {
            zwlr_virtual_pointer_v1_button(m_pointer, ++m_time, BTN_LEFT, command == "down");
            zwlr_virtual_pointer_v1_frame(m_pointer);
        } else if (command == "key") {
            std::string names;
            in >> names;
            press(names);
        } else if (command == "type") {
            for (const char character : line.substr(5))
                tap(xkb_utf32_to_keysym(std::uint32_t(character)));
        }
        return m_globals->roundTrip();
    }

private:
    void send(std::uint32_t code, bool down)
    {
        zwp_virtual_keyboard_v1_key(m_keyboard, ++m_time, code, down);
    }

    void modifiers(std::uint32_t mask)
    {
        zwp_virtual_keyboard_v1_modifiers(m_keyboard, mask, 0, 0, 0);
    }

    std::uint32_t mask(const char *modifier)
    {
        return 1U << xkb_keymap_mod_get_index(m_keymap, modifier);
    }

    void press(const std::string &names)
    {
        std::istringstream in(names);
        std::string name;
        std::uint32_t held = 0;
        while (std::getline(in, name, '+')) {
            if (name == "ctrl")
                held |= mask(XKB_MOD_NAME_CTRL);
            else if (name == "shift")
                held |= mask(XKB_MOD_NAME_SHIFT);
            else
                tap(xkb_keysym_from_name(name.c_str(), XKB_KEYSYM_NO_FLAGS), held);
        }
    }

    void tap(xkb_keysym_t wanted, std::uint32_t held = 0)
    {
        for (xkb_keycode_t code = xkb_keymap_min_keycode(m_keymap);
             code <= xkb_keymap_max_keycode(m_keymap); ++code) {
            for (xkb_level_index_t level = 0; level < 2; ++level) {
                const xkb_keysym_t *symbols = nullptr;
                if (xkb_keymap_key_get_syms_by_level(m_keymap, code, 0, level, &symbols) != 1 ||
                    symbols[0] != wanted)
                    continue;
                modifiers(held | (level ? mask(XKB_MOD_NAME_SHIFT) : 0));
                send(code - keycodeOffset, true);
                send(code - keycodeOffset, false);
                modifiers(0);
                return;
            }
        }
    }

    std::unique_ptr<platform::linux_::WaylandGlobals> m_globals =
        platform::linux_::WaylandGlobals::ofEnvironment();
    wl_seat *m_seat = nullptr;
    zwlr_virtual_pointer_v1 *m_pointer = nullptr;
    zwp_virtual_keyboard_v1 *m_keyboard = nullptr;
    xkb_keymap *m_keymap = nullptr;
    std::uint32_t m_time = 0;
    const std::uint32_t m_width;
    const std::uint32_t m_height;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    Hand hand(std::uint32_t(std::stoul(argv[1])), std::uint32_t(std::stoul(argv[2])));
    std::cout << "ready" << std::endl;
    for (std::string line; std::getline(std::cin, line);)
        std::cout << (hand.obey(line) ? "ok" : "failed") << std::endl;
}
