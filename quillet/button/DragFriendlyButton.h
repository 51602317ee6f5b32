// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QPointF>
#include <QSvgRenderer>
#include <QTimer>
#include <QWidget>

#include <functional>

/// The floating button: a press that moves no further than dragThreshold on either axis is a click,
/// any other moves the window and never clicks. A press that lasts asks for the menu instead.
class DragFriendlyButton : public QWidget
{
    Q_OBJECT

public:
    /// `mouseLocation` tells where the pointer is on the screen, in points; the window moves while
    /// it is dragged, so the events' own locations would not do.
    DragFriendlyButton(const QString &image, std::function<QPointF()> mouseLocation,
                       QWidget *parent);

    /// Points.
    static constexpr double dragThreshold = 3.0;

Q_SIGNALS:
    void clicked();
    /// The user has let go of the button elsewhere.
    void dragged();
    /// A press of the other mouse button, or a long one of the first.
    void menuWanted();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QSvgRenderer m_image;
    std::function<QPointF()> m_mouseLocation;
    QPointF m_initialMouseLocation;
    QPointF m_initialWindowOrigin;
    bool m_didDrag = false;
    bool m_wasLong = false;
    QTimer m_longPress;
};
