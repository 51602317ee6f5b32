// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QColor>
#include <QLabel>

/// A text that is as wide as its longest line, and wraps between words where it is given less. It
/// is painted without the desktop's style, so that it looks the same under every theme. Main
/// thread.
class TextView : public QLabel
{
    Q_OBJECT

public:
    /// `alignment` places the lines among themselves: Qt::AlignLeading or Qt::AlignHCenter.
    TextView(const QString &text, const QFont &font, const QColor &color, Qt::Alignment alignment,
             QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return QSize(0, 0); }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int textFlags() const;

    QColor m_color;
};
