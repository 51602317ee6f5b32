// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QTimer>
#include <QWidget>

/// The thin line at the edge of the result area: it moves while a request runs, and stands still in
/// red after one that failed. Main thread.
class ProgressLine : public QWidget
{
    Q_OBJECT

public:
    explicit ProgressLine(QWidget *parent = nullptr);

    enum class State { Idle, Running, Stopped };
    /// A line that is to run comes into sight after a short while, so that a quick answer does not
    /// make it flash.
    void setState(State state);
    State state() const { return m_state; }
    /// Whether the line is in sight and moves.
    bool isMoving() const { return m_step.isActive(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    State m_state = State::Idle;
    QTimer m_delay;
    QTimer m_step;
    /// Where the moving piece is, from 0 to 1.
    qreal m_place = 0;
};
