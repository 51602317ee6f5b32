// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/TextView.h"

#include <QFontMetrics>
#include <QPainter>

TextView::TextView(const QString &text, const QFont &font, const QColor &color,
                   Qt::Alignment alignment, QWidget *parent)
    : QLabel(parent)
    , m_color(color)
{
    setTextFormat(Qt::PlainText);
    setFont(font);
    setAlignment(alignment | Qt::AlignTop);
    setWordWrap(true);
    setText(text);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

int TextView::textFlags() const
{
    return int(alignment()) | Qt::TextWordWrap;
}

QSize TextView::sizeHint() const
{
    const QRect unwrapped = fontMetrics().boundingRect(
        QRect(0, 0, QWIDGETSIZE_MAX, QWIDGETSIZE_MAX), int(alignment()), text());
    // One more, because a width that was rounded down would break the line.
    return QSize(unwrapped.width() + 1, unwrapped.height()).grownBy(contentsMargins());
}

int TextView::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    const QRect room(0, 0, width - margins.left() - margins.right(), QWIDGETSIZE_MAX);
    return fontMetrics().boundingRect(room, textFlags(), text()).height() + margins.top() +
           margins.bottom();
}

void TextView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(m_color);
    painter.drawText(contentsRect(), textFlags(), text());
}
