// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/PopupStyle.h"

#include <QPalette>
#include <QTextCharFormat>
#include <QTextDocument>
#include <QTextOption>
#include <QWidget>

namespace PopupStyle
{

namespace
{

bool isDark(const QPalette &palette, QPalette::ColorRole role)
{
    return palette.color(role).lightness() < 128;
}

} // namespace

QString thinScrollBar(const QPalette &palette)
{
    return QStringLiteral(
               "QScrollBar:vertical { width: 8px; background: transparent; margin: 2px 1px; }"
               "QScrollBar::handle:vertical { background: %1; border-radius: 3px;"
               " min-height: 24px; }"
               "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"
               "QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }")
        .arg(isDark(palette, QPalette::Window) ? QStringLiteral("#9a9aa2")
                                               : QStringLiteral("#86868c"));
}

QColor accentOn(const QPalette &palette)
{
    return isDark(palette, QPalette::Base) ? accentBorder : accentPurple;
}

QColor failureColor(const QPalette &palette)
{
    return isDark(palette, QPalette::Base) ? QColor(0xFF, 0x6B, 0x61) : QColor(0xC6, 0x28, 0x28);
}

QTextCharFormat changeFormat(const QPalette &palette)
{
    QTextCharFormat format;
    const bool dark = isDark(palette, QPalette::Base);
    format.setBackground(dark ? QColor(0x45, 0x36, 0x80) : QColor(0xE6, 0xDE, 0xFF));
    format.setUnderlineStyle(QTextCharFormat::DotLine);
    format.setUnderlineColor(accentOn(palette));
    return format;
}

QColor goneColor(const QPalette &palette)
{
    return isDark(palette, QPalette::Base) ? QColor(0xFF, 0x9A, 0x92) : QColor(0xB3, 0x26, 0x1E);
}

void placeBetweenOutlines(QWidget *part, const QRect &rect)
{
    part->setGeometry(rect);
    part->setMask(part->rect().adjusted(1, 0, -1, 0));
}

void alignByParagraph(QTextDocument &document)
{
    QTextOption option = document.defaultTextOption();
    option.setTextDirection(Qt::LayoutDirectionAuto);
    // The layout of plain text knows no leading edge. With both flags, no line is stretched, and
    // one that runs from right to left is put at the right.
    option.setAlignment(Qt::AlignLeft | Qt::AlignJustify);
    document.setDefaultTextOption(option);
}

} // namespace PopupStyle
