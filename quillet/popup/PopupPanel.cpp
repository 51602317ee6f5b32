// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/PopupPanel.h"

#include <QPainter>
#include <QShortcut>

namespace
{

constexpr qreal CornerRadius = 10;
constexpr qreal BackgroundOpacity = 0.95;
constexpr QColor Outline(0, 0, 0, 0x38);

} // namespace

PopupPanel::PopupPanel(QWidget *parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint)
{
    setAttribute(Qt::WA_TranslucentBackground);
    auto *escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &PopupPanel::closeWanted);
}

void PopupPanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor background = palette().color(QPalette::Window);
    background.setAlphaF(BackgroundOpacity);
    painter.setPen(QPen(Outline, 1));
    painter.setBrush(background);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), CornerRadius,
                            CornerRadius);
}
