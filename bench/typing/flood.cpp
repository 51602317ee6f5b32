// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Presses and releases the keys for the text of standard input, all at once and without a look at
// anything: what a program takes when typing costs nothing. Characters that the layout does not
// have alone or with Shift are left out.

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <iostream>
#include <iterator>
#include <map>
#include <string>

namespace
{

struct Key {
    KeyCode keycode = 0;
    unsigned modifiers = 0;
};

std::map<char, Key> keysOfLayout(Display *display)
{
    int first = 0;
    int last = 0;
    XDisplayKeycodes(display, &first, &last);
    std::map<char, Key> keys;
    for (int keycode = first; keycode <= last; ++keycode) {
        for (const int level : {0, 1}) {
            const KeySym keysym = XkbKeycodeToKeysym(display, KeyCode(keycode), 0, level);
            const bool ascii = keysym >= XK_space && keysym <= XK_asciitilde;
            if (ascii || keysym == XK_Return)
                keys.try_emplace(ascii ? char(keysym) : '\n',
                                 Key{KeyCode(keycode), level ? ShiftMask : 0U});
        }
    }
    return keys;
}

} // namespace

int main()
{
    Display *display = XOpenDisplay(nullptr);
    if (!display)
        return 1;
    const std::string text(std::istreambuf_iterator<char>(std::cin), {});
    const std::map<char, Key> keys = keysOfLayout(display);
    unsigned locked = 0;
    for (const char character : text) {
        const auto found = keys.find(character);
        if (found == keys.end())
            continue;
        const Key key = found->second;
        if (key.modifiers != locked)
            XkbLockModifiers(display, XkbUseCoreKbd, ShiftMask, key.modifiers);
        locked = key.modifiers;
        XTestFakeKeyEvent(display, key.keycode, True, 0);
        XTestFakeKeyEvent(display, key.keycode, False, 0);
    }
    XkbLockModifiers(display, XkbUseCoreKbd, ShiftMask, 0);
    XCloseDisplay(display);
    return 0;
}
