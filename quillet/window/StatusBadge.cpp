// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/StatusBadge.h"

#include "quillet/widgets/Fonts.h"
#include "quillet/widgets/VisualStyle.h"

#include <QPainter>
#include <QPainterPath>

namespace
{

constexpr int kPadding = 8;
constexpr int kSymbolSize = 16;
constexpr int kSymbolGap = 6;

/// A filled circle with a check mark cut out, so that what is behind shows through it.
QPainterPath checkMarkCircle(const QRectF &box)
{
    QPainterPath circle;
    circle.addEllipse(box.adjusted(0.5, 0.5, -0.5, -0.5));

    const auto at = [&box](qreal x, qreal y) {
        return box.topLeft() + QPointF(x * box.width(), y * box.height());
    };
    QPainterPath check(at(0.31, 0.52));
    check.lineTo(at(0.445, 0.655));
    check.lineTo(at(0.695, 0.36));
    QPainterPathStroker stroker;
    stroker.setWidth(box.width() * 0.105);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return circle.subtracted(stroker.createStroke(check));
}

} // namespace

StatusBadge::StatusBadge(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setFont(systemFont(kBodyPointSize, QFont::DemiBold));
}

void StatusBadge::setStatus(const QString &status, const QColor &color)
{
    m_color = color;
    setText(status);
    update();
}

QSize StatusBadge::sizeHint() const
{
    const int height = qMax(kSymbolSize, fontMetrics().height());
    return QSize(kSymbolSize + kSymbolGap + fontMetrics().horizontalAdvance(text()), height) +
           QSize(2 * kPadding, 2 * kPadding);
}

void StatusBadge::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(withOpacity(m_color, 0.1));
    painter.drawRoundedRect(rect(), 10, 10);

    const QRect inner = rect().adjusted(kPadding, kPadding, -kPadding, -kPadding);
    const QRectF symbol(inner.left(), inner.top() + (inner.height() - kSymbolSize) / 2.0,
                        kSymbolSize, kSymbolSize);
    painter.fillPath(checkMarkCircle(symbol), m_color);

    painter.setPen(m_color);
    painter.drawText(inner.adjusted(kSymbolSize + kSymbolGap, 0, 0, 0),
                     Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine, text());
}
