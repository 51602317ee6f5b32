// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/layers/LayerKeyboard.h"

#include "platform/linux/wayland/layers/LayerPanels.h"

#include <QGuiApplication>
#include <QWindow>

#include <chrono>
#include <utility>

namespace platform::linux_
{

namespace
{

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds checkInterval = 20ms;
constexpr std::chrono::milliseconds giveUpAfter = 2s;

} // namespace

LayerKeyboard::LayerKeyboard(LayerPanels &panels, ActiveWindow *activeWindow)
    : m_panels(panels)
    , m_activeWindow(activeWindow)
{
    m_check.setInterval(checkInterval);
    connect(&m_check, &QTimer::timeout, this, &LayerKeyboard::check);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow *window) {
        if (m_borrower && window == m_borrower->windowHandle())
            m_taking = false;
    });
    connect(&m_panels, &LayerPanels::leaving, this, [this](QWidget *panel) {
        if (!m_returning && panel == m_borrower)
            giveBack({});
    });
}

void LayerKeyboard::take(QWidget *panel)
{
    if (!m_panels.canTakeKeyboard(panel) || !panel->isVisible() || !panel->windowHandle())
        return;
    if (m_returning)
        finish(false);
    if (!isOut())
        m_lender = m_activeWindow ? m_activeWindow->activeWindow() : std::nullopt;
    m_borrower = panel;
    m_taking = QGuiApplication::focusWindow() != panel->windowHandle();
    panel->windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, false);
    m_panels.setTakesKeyboard(panel, true);
}

void LayerKeyboard::giveBack(std::function<void(bool)> completion)
{
    if (!m_borrower && !m_returning) {
        if (completion)
            completion(true);
        return;
    }
    if (completion)
        m_completions.push_back(std::move(completion));
    if (m_returning)
        return;
    const bool isHeld = isOut();
    m_returning = true;
    m_taking = false;
    m_panels.setTakesKeyboard(m_borrower, false);
    if (!isHeld) {
        // The user has turned to a window, and that keeps the keyboard.
        finish(lenderHasIt());
        return;
    }
    m_sinceReturn.start();
    m_check.start();
}

bool LayerKeyboard::isOut() const
{
    return m_returning || (m_borrower && (m_taking || QGuiApplication::focusWindow() ==
                                                          m_borrower->windowHandle()));
}

bool LayerKeyboard::lenderHasIt() const
{
    const auto window = m_activeWindow ? m_activeWindow->activeWindow() : std::nullopt;
    return !m_lender || (window && window->id == m_lender->id);
}

void LayerKeyboard::check()
{
    const bool hasLeft =
        !m_borrower || QGuiApplication::focusWindow() != m_borrower->windowHandle();
    if (hasLeft && lenderHasIt())
        finish(true);
    else if (std::chrono::milliseconds(m_sinceReturn.elapsed()) > giveUpAfter)
        finish(false);
}

void LayerKeyboard::finish(bool returned)
{
    m_check.stop();
    m_returning = false;
    m_taking = false;
    m_lender.reset();
    // A window that is hidden has no surface, which the toolkit does not expect here.
    if (m_borrower && m_borrower->isVisible() && m_borrower->windowHandle())
        m_borrower->windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus);
    m_borrower.clear();
    for (const auto &completion : std::exchange(m_completions, {}))
        completion(returned);
}

} // namespace platform::linux_
