// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QObject>
#include <QSet>

namespace platform::linux_
{

/// Notices what the user does with the pointer in any program's window: raw events of XInput 2,
/// which the other programs get all the same. No event is selected without a listener. Main thread
/// only.
class PointerWatch : public QObject
{
    Q_OBJECT
public:
    explicit PointerWatch(XcbConnection &connection);

    /// Buttons 4 to 7 are the wheel.
    static bool isWheel(quint32 button) { return button >= 4 && button <= 7; }

    void setPressesWanted(const QObject *by, bool wanted);

Q_SIGNALS:
    /// A button or the wheel, with the X server's time of it.
    void pressed(quint32 button, xcb_timestamp_t time);

private:
    void select();
    void handle(const xcb_generic_event_t *event);

    XcbConnection &m_connection;
    /// Major opcode of XInput 2; 0 where the server has none.
    quint8 m_xinput = 0;
    QSet<const QObject *> m_presses;
};

} // namespace platform::linux_
