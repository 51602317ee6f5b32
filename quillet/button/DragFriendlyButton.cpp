// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/button/DragFriendlyButton.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>

DragFriendlyButton::DragFriendlyButton(const QString &image, std::function<QPointF()> mouseLocation,
                                       QWidget *parent)
    : QWidget(parent)
    , m_image(image)
    , m_mouseLocation(std::move(mouseLocation))
{
    m_image.setAspectRatioMode(Qt::KeepAspectRatio);
    setCursor(Qt::PointingHandCursor);
}

void DragFriendlyButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_initialMouseLocation = m_mouseLocation();
    m_initialWindowOrigin = window()->pos();
    m_didDrag = false;
}

void DragFriendlyButton::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const QPointF moved = m_mouseLocation() - m_initialMouseLocation;
    if (std::abs(moved.x()) <= dragThreshold && std::abs(moved.y()) <= dragThreshold)
        return;
    m_didDrag = true;
    window()->move((m_initialWindowOrigin + moved).toPoint());
}

void DragFriendlyButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && !m_didDrag)
        Q_EMIT clicked();
}

void DragFriendlyButton::paintEvent(QPaintEvent *)
{
    // A vector image painted at the screen's own resolution is sharp at every scale.
    QPainter painter(this);
    if (m_image.isValid())
        m_image.render(&painter, rect());
}
