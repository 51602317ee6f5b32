// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/ProgressLine.h"

#include "quillet/popup/PopupStyle.h"

#include <QPainter>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

constexpr auto delayBeforeMoving = 150ms;
constexpr auto stepInterval = 33ms;
/// Part of the line's length that the piece moves at each step, and that the piece is long.
constexpr qreal stepLength = 0.02;
constexpr qreal pieceLength = 0.3;

} // namespace

ProgressLine::ProgressLine(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_delay.setSingleShot(true);
    m_delay.setInterval(delayBeforeMoving);
    m_step.setInterval(stepInterval);
    connect(&m_delay, &QTimer::timeout, this, [this] {
        m_step.start();
        update();
    });
    connect(&m_step, &QTimer::timeout, this, [this] {
        m_place += stepLength;
        if (m_place >= 1)
            m_place = 0;
        update();
    });
}

void ProgressLine::setState(State state)
{
    m_state = state;
    m_place = 0;
    m_step.stop();
    if (state == State::Running)
        m_delay.start();
    else
        m_delay.stop();
    update();
}

void ProgressLine::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_state == State::Stopped) {
        painter.fillRect(rect(), PopupStyle::failureColor(palette()));
    } else if (m_step.isActive()) {
        // The piece comes in at one end and leaves at the other.
        const qreal from = m_place * (1 + pieceLength) - pieceLength;
        painter.fillRect(QRectF(from * width(), 0, pieceLength * width(), height()),
                         PopupStyle::accentOn(palette()));
    }
}
