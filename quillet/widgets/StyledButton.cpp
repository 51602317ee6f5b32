// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/StyledButton.h"

#include <QKeyEvent>
#include <QPainter>

StyledButton::StyledButton(std::unique_ptr<ButtonStyle> style, const ButtonLabel &label,
                           QWidget *parent)
    : QPushButton(label.text, parent)
    , m_buttonStyle(std::move(style))
    , m_label(label)
{
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(m_buttonStyle->size());
}

QSize StyledButton::sizeHint() const
{
    return m_buttonStyle->size();
}

void StyledButton::paintEvent(QPaintEvent *)
{
    ButtonLabel label = m_label;
    label.text = text();
    QPainter painter(this);
    m_buttonStyle->makeBody(
        painter, {label, QRectF(rect()), isDown(), isEnabled(), m_showsFocus && hasFocus()});
}

void StyledButton::keyPressEvent(QKeyEvent *event)
{
    setShowsFocus(true);
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && !event->isAutoRepeat()) {
        click();
        return;
    }
    QPushButton::keyPressEvent(event);
}

void StyledButton::mousePressEvent(QMouseEvent *event)
{
    setShowsFocus(false);
    QPushButton::mousePressEvent(event);
}

void StyledButton::focusInEvent(QFocusEvent *event)
{
    const Qt::FocusReason reason = event->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
        reason == Qt::ShortcutFocusReason)
        setShowsFocus(true);
    QPushButton::focusInEvent(event);
}

void StyledButton::setShowsFocus(bool shows)
{
    m_showsFocus = shows;
    update();
}
