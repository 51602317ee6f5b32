// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/VisualStyle.h"

#include "quillet/widgets/Fonts.h"
#include "quillet/widgets/WindowMetrics.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QTextBoundaryFinder>

namespace
{

constexpr qreal kCornerRadius = 25;

bool isAlphanumeric(char32_t c)
{
    return QChar::isLetterOrNumber(c) || QChar::isMark(c);
}

QString trimmedToAlphanumerics(const QString &text)
{
    QList<uint> scalars = text.toUcs4();
    while (!scalars.isEmpty() && !isAlphanumeric(scalars.last()))
        scalars.removeLast();
    while (!scalars.isEmpty() && !isAlphanumeric(scalars.first()))
        scalars.removeFirst();
    QString trimmed;
    for (const char32_t scalar : scalars)
        trimmed += QChar::fromUcs4(scalar);
    return trimmed;
}

/// Characters as a reader counts them.
int characterCount(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}

int hexDigit(QChar c)
{
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

quint64 leadingHexNumber(QStringView text)
{
    if (text.startsWith(u"0x", Qt::CaseInsensitive))
        text = text.sliced(2);
    quint64 number = 0;
    for (const QChar c : text) {
        const int digit = hexDigit(c);
        if (digit < 0)
            break;
        number = number * 16 + quint64(digit);
    }
    return number;
}

QPainterPath roundedBox(const QRectF &box, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(box, radius, radius);
    return path;
}

void paintFocusRing(QPainter &painter, const QRectF &bounds, const QColor &color)
{
    constexpr qreal inset = 4;
    painter.setPen(QPen(color, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(bounds.adjusted(inset, inset, -inset, -inset), kCornerRadius - inset,
                            kCornerRadius - inset);
}

void paintButton(QPainter &painter, const ButtonStyle::Configuration &configuration,
                 const QColor &background, const QColor &ring)
{
    const QRectF &bounds = configuration.bounds;
    const ButtonLabel &label = configuration.label;
    const QFont font = customFont(QStringLiteral("Manrope-Regular"), 18);
    const QPainterPath capsule = roundedBox(bounds, kCornerRadius);

    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(capsule, background);
    if (label.background) {
        // The box may be higher than the button, which cuts it off.
        QRectF box = bounds;
        box.setHeight(qMax(bounds.height(), QFontMetricsF(font).height() + 2 * kDefaultPadding));
        box.moveCenter(bounds.center());
        painter.fillPath(capsule.intersected(roundedBox(box, label.backgroundRadius)),
                         *label.background);
    }
    painter.setFont(font);
    painter.setPen(label.foreground.value_or(SystemColor::white));
    painter.drawText(bounds, Qt::AlignCenter | Qt::TextSingleLine, label.text);
    if (configuration.showsFocus)
        paintFocusRing(painter, bounds, ring);
}

} // namespace

QColor colorFromHex(const QString &hex)
{
    const QString trimmed = trimmedToAlphanumerics(hex);
    const quint64 number = leadingHexNumber(trimmed);
    if (characterCount(trimmed) != 6)
        return QColor(1, 1, 0);
    return QColor(int(number >> 16 & 255), int(number >> 8 & 255), int(number & 255));
}

QColor withOpacity(QColor color, qreal opacity)
{
    color.setAlphaF(float(opacity));
    return color;
}

QPalette lightPalette()
{
    const QColor accent = colorFromHex(QStringLiteral("#6C3DF5"));
    QPalette palette(colorFromHex(QStringLiteral("#E5E5E5")), SystemColor::white);
    palette.setColor(QPalette::WindowText, SystemColor::black);
    palette.setColor(QPalette::Text, SystemColor::black);
    palette.setColor(QPalette::ButtonText, SystemColor::black);
    palette.setColor(QPalette::Base, SystemColor::white);
    palette.setColor(QPalette::AlternateBase, colorFromHex(QStringLiteral("#F9F9F9")));
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, SystemColor::white);
    palette.setColor(QPalette::PlaceholderText, SystemColor::gray);
    palette.setColor(QPalette::Link, accent);
    return palette;
}

void PurpleButtonStyle::makeBody(QPainter &painter, const Configuration &configuration) const
{
    painter.save();
    painter.setOpacity(painter.opacity() * (configuration.isPressed ? 0.8 : 1.0));
    paintButton(painter, configuration,
                colorFromHex(configuration.isEnabled ? QStringLiteral("#6C3DF5")
                                                     : QStringLiteral("#C4A7E7")),
                SystemColor::white);
    painter.restore();
}

void GreyButtonStyle::makeBody(QPainter &painter, const Configuration &configuration) const
{
    painter.save();
    paintButton(painter, configuration, colorFromHex(QStringLiteral("#E5E5E5")),
                colorFromHex(QStringLiteral("#6C3DF5")));
    painter.restore();
}
