// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/KeyGrab.h"

#include <algorithm>
#include <array>

namespace platform::linux_
{

namespace
{

/// Caps Lock, and Num Lock where every common layout has it.
constexpr quint16 capsLock = XCB_MOD_MASK_LOCK;
constexpr quint16 numLock = XCB_MOD_MASK_2;
constexpr std::array<quint16, 4> lockStates{0, capsLock, numLock, capsLock | numLock};
constexpr quint16 allModifiers = 0xff;

/// The keys that give `keysym`, in whichever group and level.
QList<xcb_keycode_t> keycodesFor(XcbConnection &connection, xcb_keysym_t keysym)
{
    xcb_connection_t *c = connection.get();
    const xcb_setup_t *setup = xcb_get_setup(c);
    const xcb_keycode_t first = setup->min_keycode;
    const int count = setup->max_keycode - first + 1;
    const XcbPtr<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(
        c, xcb_get_keyboard_mapping(c, first, uint8_t(count)), nullptr));
    if (!reply || reply->keysyms_per_keycode == 0)
        return {};
    const xcb_keysym_t *keysyms = xcb_get_keyboard_mapping_keysyms(reply.get());
    QList<xcb_keycode_t> found;
    for (int i = 0; i < count; ++i) {
        const xcb_keysym_t *ofKey = keysyms + i * reply->keysyms_per_keycode;
        if (std::find(ofKey, ofKey + reply->keysyms_per_keycode, keysym) !=
            ofKey + reply->keysyms_per_keycode)
            found.append(xcb_keycode_t(first + i));
    }
    return found;
}

} // namespace

KeyGrab::KeyGrab(XcbConnection &connection, xcb_keysym_t keysym, quint16 modifiers, QObject *parent)
    : QObject(parent)
    , m_connection(connection)
    , m_keysym(keysym)
    , m_modifiers(modifiers)
{
    connect(&m_connection, &XcbConnection::eventReceived, this, &KeyGrab::handle);
    grab();
}

KeyGrab::~KeyGrab()
{
    release();
}

void KeyGrab::grab()
{
    xcb_connection_t *c = m_connection.get();
    m_keycodes = keycodesFor(m_connection, m_keysym);
    m_isHeld = !m_keycodes.isEmpty();
    for (const xcb_keycode_t keycode : std::as_const(m_keycodes)) {
        for (const quint16 locks : lockStates) {
            const auto cookie =
                xcb_grab_key_checked(c, false, m_connection.root(), uint16_t(m_modifiers | locks),
                                     keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            const XcbPtr<xcb_generic_error_t> error(xcb_request_check(c, cookie));
            m_isHeld = m_isHeld && !error;
        }
    }
}

void KeyGrab::release()
{
    xcb_connection_t *c = m_connection.get();
    for (const xcb_keycode_t keycode : std::as_const(m_keycodes)) {
        for (const quint16 locks : lockStates)
            xcb_ungrab_key(c, keycode, m_connection.root(), uint16_t(m_modifiers | locks));
    }
    m_keycodes.clear();
    xcb_flush(c);
}

void KeyGrab::handle(const xcb_generic_event_t *event)
{
    switch (event->response_type & 0x7f) {
    case XCB_KEY_PRESS: {
        const auto *key = reinterpret_cast<const xcb_key_press_event_t *>(event);
        const quint16 modifiers = key->state & allModifiers & ~(capsLock | numLock);
        if (m_keycodes.contains(key->detail) && modifiers == m_modifiers)
            Q_EMIT pressed();
        break;
    }
    case XCB_MAPPING_NOTIFY: {
        const auto *mapping = reinterpret_cast<const xcb_mapping_notify_event_t *>(event);
        if (mapping->request == XCB_MAPPING_KEYBOARD &&
            keycodesFor(m_connection, m_keysym) != m_keycodes) {
            release();
            grab();
        }
        break;
    }
    default:
        break;
    }
}

} // namespace platform::linux_
