// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QTimer>

class QWidget;

namespace platform::linux_
{

/// The small windows that float above everything else.
///
/// They are override-redirect: a window manager then neither focuses, moves, lists nor lowers
/// them, shows them on every desktop and above full-screen windows, and it makes no difference
/// which one runs, or whether one runs at all. What a window manager would have done is done here:
/// keeping them on top of windows that are raised later.
///
/// Main thread only. `connection` may be null where there is no X server; panels are then only what
/// the toolkit makes of their flags.
class FloatingPanels : public QObject
{
    Q_OBJECT
public:
    explicit FloatingPanels(XcbConnection *connection);
    ~FloatingPanels() override;

    /// Before `panel` is first shown. It must not have a graphics effect of its own.
    void prepare(QWidget *panel, bool canTakeKeyboard);

    bool canTakeKeyboard(const QWidget *panel) const;
    /// The panel whose window this is, or null.
    QWidget *panelWith(xcb_window_t window) const;

Q_SIGNALS:
    /// The panel is being closed, or has just been hidden.
    void leaving(QWidget *panel);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void handle(const xcb_generic_event_t *event);
    bool composited() const;
    void updateDrawing(QWidget *panel);
    void setShape(QWidget *panel, const QList<QRect> &pixels);
    void raisePanels();
    static xcb_window_t windowOf(const QWidget *panel);

    XcbConnection *m_connection;
    quint8 m_firstXFixesEvent = 0;
    /// Panel → may take the keyboard.
    QHash<QWidget *, bool> m_panels;
    QTimer m_raise;
};

} // namespace platform::linux_
