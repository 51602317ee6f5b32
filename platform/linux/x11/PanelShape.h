// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QGraphicsEffect>
#include <QList>
#include <QRect>

namespace platform::linux_
{

/// Draws a translucent panel for a display without compositing: every pixel comes out either
/// opaque, in its own colour, or not at all, and `painted` reports the pixels that remain, for the
/// window's bounding shape. Main thread only.
class PanelShape : public QGraphicsEffect
{
    Q_OBJECT
public:
    using QGraphicsEffect::QGraphicsEffect;

Q_SIGNALS:
    /// Rectangles in device pixels from the panel's top left corner.
    void painted(const QList<QRect> &pixels);

protected:
    void draw(QPainter *painter) override;
};

/// Makes each pixel opaque or clear, whichever it is closer to, and returns the opaque ones.
QList<QRect> cutOut(QImage &image);

} // namespace platform::linux_
