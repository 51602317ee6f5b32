// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QColor>
#include <QPalette>
#include <QRectF>
#include <QSize>
#include <QString>

#include <optional>

class QPainter;

/// Turns hexadecimal colour text into an opaque sRGB colour. What is not a letter or a digit is cut
/// off both ends, then the longest run of hexadecimal digits at the start counts (after an optional
/// "0x"). Exactly six characters give red, green and blue; any other length gives (1, 1, 0).
/// Never fails. Any thread.
QColor colorFromHex(const QString &hex);

/// The colours that have a name. They are those of the light scheme, whatever the desktop's is.
namespace SystemColor
{
inline const QColor white{0xFF, 0xFF, 0xFF};
inline const QColor black{0x00, 0x00, 0x00};
inline const QColor gray{0x8E, 0x8E, 0x93};
inline const QColor orange{0xFF, 0x95, 0x00};
inline const QColor green{0x34, 0xC7, 0x59};
inline const QColor red{0xFF, 0x3B, 0x30};
} // namespace SystemColor

/// `color` with its opacity, from 0 to 1, replaced. Any thread.
QColor withOpacity(QColor color, qreal opacity);

/// A complete palette of the light scheme for the main window's views and the controls in them.
/// Main thread.
QPalette lightPalette();

/// What a button says, and the look that the label brings with it.
struct ButtonLabel {
    QString text;
    /// In place of the style's own.
    std::optional<QColor> foreground = {};
    /// A filled box around the text, as wide as the button, with kDefaultPadding around the text.
    std::optional<QColor> background = {};
    qreal backgroundRadius = 0;
};

/// How a button looks: pure painting, so that it can be looked at without a button. Main thread.
class ButtonStyle
{
public:
    struct Configuration {
        ButtonLabel label = {};
        QRectF bounds = {};
        bool isPressed = false;
        bool isEnabled = true;
        /// The keyboard is at this button and the user is using it.
        bool showsFocus = false;
    };

    virtual ~ButtonStyle() = default;
    /// In points.
    virtual QSize size() const = 0;
    virtual void makeBody(QPainter &painter, const Configuration &configuration) const = 0;
};

/// The filled capsule of each page's main action.
class PurpleButtonStyle : public ButtonStyle
{
public:
    QSize size() const override { return QSize(350, 50); }
    void makeBody(QPainter &painter, const Configuration &configuration) const override;
};

/// The quiet capsule of a secondary action; looks the same in every state.
class GreyButtonStyle : public ButtonStyle
{
public:
    QSize size() const override { return QSize(250, 50); }
    void makeBody(QPainter &painter, const Configuration &configuration) const override;
};
