// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/CardView.h"

#include "quillet/widgets/Fonts.h"
#include "quillet/widgets/VerticalStack.h"
#include "quillet/widgets/VisualStyle.h"
#include "quillet/widgets/WindowMetrics.h"

#include <QPainter>

namespace
{

constexpr int kWidth = 350;
constexpr int kTextWidth = 250;
constexpr qreal kCornerRadius = 16;

} // namespace

CardView::CardView(const QString &title, const QString &text, QWidget *parent)
    : QWidget(parent)
    , m_stack(new VerticalStack(VerticalStack::Alignment::Center, 12, this))
    , m_badge(new StatusBadge)
    , m_text(new TextView(text, customFont(QStringLiteral("Regular-Bold"), 16),
                          withOpacity(SystemColor::black, 0.7), Qt::AlignHCenter))
{
    setFixedWidth(kWidth);
    m_stack->setContentsMargins(kDefaultPadding, kDefaultPadding, kDefaultPadding, kDefaultPadding);
    m_stack->addWidget(new TextView(title, customFont(QStringLiteral("Manrope-SemiBold"), 18),
                                    colorFromHex(QStringLiteral("#B2B2B2")), Qt::AlignHCenter));
    m_stack->addWidget(m_badge);
    m_text->setFixedWidth(kTextWidth);
    m_stack->addWidget(m_text);
}

void CardView::addControl(QWidget *control)
{
    m_stack->addWidget(control);
}

void CardView::paintEvent(QPaintEvent *)
{
    QRectF panel = rect();
    panel.setWidth(m_stack->sizeHint().width());
    panel.moveCenter(QRectF(rect()).center());

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(colorFromHex(QStringLiteral("#F9F9F9")));
    painter.setPen(QPen(colorFromHex(QStringLiteral("#EEF0E6")), 1));
    // The line lies inside the panel, where it falls on whole pixels.
    painter.drawRoundedRect(panel.adjusted(0.5, 0.5, -0.5, -0.5), kCornerRadius, kCornerRadius);
}
