// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/x11/WindowServer.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <vector>

namespace platform::linux_
{

class FloatingPanels;

/// The keyboard, borrowed by a panel from the window that had it, and given back.
///
/// A panel that leaves the screen while it has the keyboard gives it back by itself. Only what a
/// panel still holds is given back: once another window has the focus, the user has moved on. Main
/// thread only.
class KeyboardLoan : public QObject
{
    Q_OBJECT
public:
    /// Both must outlive this object.
    KeyboardLoan(WindowServer &server, FloatingPanels &panels);
    ~KeyboardLoan() override;

    void take(QWidget *panel);

    /// Gives the keyboard back. `completion` is called once: at once with true when nothing was
    /// borrowed; with true as soon as the lender has it; with false when the lender is gone,
    /// another window has the focus, or the lender has not got it after two seconds.
    void giveBack(std::function<void(bool)> completion);

    /// The user has clicked at `time`, and the click decides who has the keyboard from then on:
    /// what is given back by the next giveBack() counts as given just before it, so that the X
    /// server lets the window manager's answer to the click win, in whichever order they come.
    void yieldTo(xcb_timestamp_t time) { m_clickTime = time; }

    /// True while a panel has the keyboard, or the lender is about to get it.
    bool isOut();

private:
    void handle(const xcb_generic_event_t *event);
    void check();
    void insist();
    void finish(bool returned);
    void watchBorrower(QWidget *panel);
    bool isWith(xcb_window_t lender);
    bool isElsewhere();

    WindowServer &m_server;
    FloatingPanels &m_panels;
    /// The window that had the input focus, and the active window around it.
    xcb_window_t m_lender = XCB_NONE;
    xcb_window_t m_activeWindow = XCB_NONE;
    /// The last one that did not get the keyboard back.
    xcb_window_t m_formerLender = XCB_NONE;
    QPointer<QWidget> m_borrower;
    xcb_window_t m_borrowerWindow = XCB_NONE;
    /// Another window took the focus from the panel.
    bool m_isLost = false;
    bool m_returning = false;
    /// The click that the next return comes from; XCB_CURRENT_TIME for none.
    xcb_timestamp_t m_clickTime = XCB_CURRENT_TIME;
    std::vector<std::function<void(bool)>> m_completions;
    QTimer m_insist;
    QTimer m_deadline;
};

} // namespace platform::linux_
