// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/x11/KeyGrab.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

namespace platform::linux_
{

class FloatingPanels;
class KeyboardLoan;
class PointerWatch;

/// Tells when the user wants an open panel gone: Escape is pressed, in any window, or a
/// mouse button outside all panels. Escape is grabbed only while the panel is shown; a click is
/// only noticed, and goes where it would have gone. Main thread only.
class DismissalWatch : public QObject
{
    Q_OBJECT
public:
    /// All must outlive this object.
    DismissalWatch(XcbConnection &connection, FloatingPanels &panels, PointerWatch &pointer,
                   KeyboardLoan &keyboard);

    /// Watches until `panel` leaves the screen or another panel is watched.
    void watch(QWidget *panel, std::function<void()> dismissed);

private:
    void stop();
    void notePress(quint32 button, xcb_timestamp_t time);
    void dismiss();

    XcbConnection &m_connection;
    FloatingPanels &m_panels;
    PointerWatch &m_pointer;
    KeyboardLoan &m_keyboard;
    QPointer<QWidget> m_panel;
    std::function<void()> m_dismissed;
    std::unique_ptr<KeyGrab> m_escape;
};

} // namespace platform::linux_
