// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "quillet/widgets/VisualStyle.h"

#include <QPushButton>

#include <memory>

/// A push button that a ButtonStyle paints. Return works like Space, and a ring shows where the
/// keyboard is once the keyboard has been used. Its accessible name is its text. Main thread.
class StyledButton : public QPushButton
{
    Q_OBJECT

public:
    /// `label` gives the text too.
    StyledButton(std::unique_ptr<ButtonStyle> style, const ButtonLabel &label,
                 QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    void setShowsFocus(bool shows);

    std::unique_ptr<ButtonStyle> m_buttonStyle;
    ButtonLabel m_label;
    bool m_showsFocus = false;
};
