// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QAbstractButton>
#include <QColor>

/// A button of the popup: a rounded field with a centred title. Looks the same in every desktop
/// style; darkens while pressed or pointed at, and shows a ring when it has the keyboard.
class PillButton : public QAbstractButton
{
    Q_OBJECT

public:
    struct Look {
        QColor background = Qt::white;
        QColor border = Qt::lightGray;
        /// Points; 0 for no border.
        qreal borderWidth = 1;
        QColor title = Qt::black;
    };

    explicit PillButton(const QString &title, QWidget *parent = nullptr);

    void setLook(const Look &look);
    const Look &look() const { return m_look; }

    /// Points.
    void setCornerRadius(qreal radius);

    /// Width of the title in the button's font, rounded up to a whole point.
    qreal titleWidth() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    Look m_look;
    qreal m_cornerRadius = 8;
};
