// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/ActiveWindow.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <vector>

namespace platform::linux_
{

class LayerPanels;

/// The keyboard, borrowed by a panel from the window that had it, and given back. A panel that
/// leaves the screen while it has the keyboard gives it back by itself. Main thread only.
class LayerKeyboard : public QObject
{
    Q_OBJECT
public:
    LayerKeyboard(LayerPanels &panels, ActiveWindow *activeWindow);

    void take(QWidget *panel);

    /// Gives the keyboard back. `completion` is called once: at once with true when nothing was
    /// borrowed; with true as soon as the lender has it; with false when it has not got it after
    /// two seconds.
    void giveBack(std::function<void(bool)> completion);

    /// True while a panel has the keyboard or is about to get it, or the lender is.
    bool isOut() const;

    /// The window that the keyboard was borrowed from.
    const std::optional<ActiveWindow::Window> &lender() const { return m_lender; }

private:
    bool lenderHasIt() const;
    void check();
    void finish(bool returned);

    LayerPanels &m_panels;
    ActiveWindow *m_activeWindow;
    QPointer<QWidget> m_borrower;
    std::optional<ActiveWindow::Window> m_lender;
    bool m_taking = false;
    bool m_returning = false;
    std::vector<std::function<void(bool)>> m_completions;
    QElapsedTimer m_sinceReturn;
    QTimer m_check;
};

} // namespace platform::linux_
