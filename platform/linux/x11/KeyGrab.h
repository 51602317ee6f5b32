// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QObject>

namespace platform::linux_
{

/// One key that comes to us, whichever window has the keyboard, for as long as this object lives.
/// No other client sees it meanwhile. The state of Caps Lock and Num Lock makes no difference.
/// Main thread only.
class KeyGrab : public QObject
{
    Q_OBJECT
public:
    /// `keysym` as in the X protocol; `modifiers` are XCB_MOD_MASK_ values. `connection` must
    /// outlive this object.
    KeyGrab(XcbConnection &connection, xcb_keysym_t keysym, quint16 modifiers,
            QObject *parent = nullptr);
    ~KeyGrab() override;

    /// False where the layout has no such key, or another client has grabbed it.
    bool isHeld() const { return m_isHeld; }

Q_SIGNALS:
    void pressed();

private:
    void grab();
    void release();
    void handle(const xcb_generic_event_t *event);

    XcbConnection &m_connection;
    const xcb_keysym_t m_keysym;
    const quint16 m_modifiers;
    QList<xcb_keycode_t> m_keycodes;
    bool m_isHeld = false;
};

} // namespace platform::linux_
