// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/PopupPanel.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QPainter>
#include <QShortcut>

namespace
{

constexpr qreal cornerRadius = 10;
constexpr qreal backgroundOpacity = 0.95;
constexpr QColor outline(0, 0, 0, 0x38);

} // namespace

PopupPanel::PopupPanel(QWidget *parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint)
{
    setAttribute(Qt::WA_TranslucentBackground);
    auto *escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &PopupPanel::closeWanted);
    auto *apply = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return), this);
    connect(apply, &QShortcut::activated, this, &PopupPanel::applyWanted);
}

void PopupPanel::keyPressEvent(QKeyEvent *event)
{
    const QString letter = event->text();
    QList<QAbstractButton *> buttons;
    for (QAbstractButton *button : findChildren<QAbstractButton *>()) {
        if (button->isVisible() && button->focusPolicy() != Qt::NoFocus)
            buttons.append(button);
    }
    const qsizetype current = buttons.indexOf(qobject_cast<QAbstractButton *>(focusWidget()));
    for (qsizetype i = 1; !letter.isEmpty() && i <= buttons.size(); ++i) {
        QAbstractButton *button = buttons[(current + i) % buttons.size()];
        if (button->text().startsWith(letter, Qt::CaseInsensitive)) {
            button->setFocus(Qt::ShortcutFocusReason);
            return;
        }
    }
    QWidget::keyPressEvent(event);
}

void PopupPanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor background = palette().color(QPalette::Window);
    background.setAlphaF(backgroundOpacity);
    painter.setPen(QPen(outline, 1));
    painter.setBrush(background);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                            cornerRadius);
    Q_EMIT painted();
}
