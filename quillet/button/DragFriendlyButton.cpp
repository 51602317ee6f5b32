// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/button/DragFriendlyButton.h"

#include <QMouseEvent>
#include <QPainter>

#include <chrono>
#include <cmath>

namespace
{

constexpr std::chrono::milliseconds longPress{600};

} // namespace

DragFriendlyButton::DragFriendlyButton(const QString &image, std::function<QPointF()> mouseLocation,
                                       QWidget *parent)
    : QWidget(parent)
    , m_image(image)
    , m_mouseLocation(std::move(mouseLocation))
{
    m_image.setAspectRatioMode(Qt::KeepAspectRatio);
    setCursor(Qt::PointingHandCursor);
    m_longPress.setSingleShot(true);
    m_longPress.setInterval(longPress);
    connect(&m_longPress, &QTimer::timeout, this, [this] {
        m_wasLong = true;
        Q_EMIT menuWanted();
    });
}

void DragFriendlyButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton)
        Q_EMIT menuWanted();
    if (event->button() != Qt::LeftButton)
        return;
    m_wasLong = false;
    m_longPress.start();
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
    m_longPress.stop();
    window()->move((m_initialWindowOrigin + moved).toPoint());
}

void DragFriendlyButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_longPress.stop();
    if (m_didDrag)
        Q_EMIT dragged();
    else if (!m_wasLong)
        Q_EMIT clicked();
}

void DragFriendlyButton::paintEvent(QPaintEvent *)
{
    // A vector image painted at the screen's own resolution is sharp at every scale.
    QPainter painter(this);
    if (m_image.isValid())
        m_image.render(&painter, rect());
}
