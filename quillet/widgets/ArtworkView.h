// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QLabel>

class QSvgRenderer;

/// A picture of the program's own. It is drawn from its vectors at the screen's resolution, fitted
/// into its frame without distortion. Main thread.
class ArtworkView : public QLabel
{
    Q_OBJECT

public:
    /// `name` as in ":/images/<name>.svg". `frame` in points; a width of 0 stands for the width
    /// that the picture has at that height. `description` is what a screen reader says.
    ArtworkView(const QString &name, const QSize &frame, const QString &description,
                QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return QSize(0, 0); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QSvgRenderer *m_renderer;
    QSize m_frame;
};
