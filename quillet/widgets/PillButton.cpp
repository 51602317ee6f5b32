// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/PillButton.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int titleSize = 13;
constexpr QColor focusRing(0x6C, 0x3D, 0xF5);

} // namespace

PillButton::PillButton(const QString &title, QWidget *parent)
    : QAbstractButton(parent)
{
    setText(title);
    QFont titleFont = font();
    titleFont.setPixelSize(titleSize);
    setFont(titleFont);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
}

void PillButton::setLook(const Look &look)
{
    m_look = look;
    update();
}

void PillButton::setCornerRadius(qreal radius)
{
    m_cornerRadius = radius;
    update();
}

qreal PillButton::titleWidth() const
{
    return std::ceil(QFontMetricsF(font()).horizontalAdvance(text()));
}

void PillButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    QColor background = m_look.background;
    if (isDown())
        background = background.darker(115);
    else if (underMouse())
        background = background.darker(104);

    // The border lies wholly inside the button.
    const qreal inset = m_look.borderWidth / 2;
    const QRectF outline = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    const qreal radius = std::min({m_cornerRadius, outline.height() / 2, outline.width() / 2});
    painter.setPen(m_look.borderWidth > 0 ? QPen(m_look.border, m_look.borderWidth)
                                          : QPen(Qt::NoPen));
    painter.setBrush(background);
    painter.drawRoundedRect(outline, radius, radius);

    if (hasFocus()) {
        // On the accent colour its own ring would not be seen.
        const bool isDark = m_look.title.lightness() > 127;
        const qreal gap = std::max(2.0, m_look.borderWidth + 1);
        painter.setPen(QPen(isDark ? QColor(Qt::white) : focusRing, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(gap, gap, -gap, -gap), radius - gap + inset,
                                radius - gap + inset);
    }

    painter.setPen(m_look.title);
    const int room = width() - 12;
    painter.drawText(rect(), Qt::AlignCenter,
                     fontMetrics().elidedText(text(), Qt::ElideRight, room));
}

void PillButton::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn)
        QAbstractButton::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        click();
}
